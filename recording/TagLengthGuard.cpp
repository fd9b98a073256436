// SPDX-License-Identifier: GPL-3.0-or-later
#include "TagLengthGuard.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr qint64 kMaxTagLength = 4096;
constexpr char kCommentStart[] = "!--";
constexpr char kCommentEnd[] = "-->";
constexpr char kCDataStart[] = "![CDATA[";
constexpr char kCDataEnd[] = "]]>";
constexpr char kInstructionEnd[] = "?>";
constexpr int kEndLength = 3; ///< of the longest end

bool endsPlainMarkup(char byte)
{
    return byte == '>' || byte == '"' || byte == '\'';
}

} // namespace

TagLengthGuard::TagLengthGuard(QIODevice* source, QObject* parent) : QIODevice(parent), m_source(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool TagLengthGuard::atEnd() const
{
    return m_isCutOff || m_source->atEnd();
}

qint64 TagLengthGuard::readData(char* data, qint64 maxSize)
{
    if (m_isCutOff)
        return -1;
    const qint64 size = m_source->read(data, maxSize);
    if (size <= 0)
        return size;
    const qint64 good = countGood(data, size);
    m_isCutOff = good < size;
    return good;
}

qint64 TagLengthGuard::writeData(const char* data, qint64 size)
{
    Q_UNUSED(data)
    Q_UNUSED(size)
    return -1;
}

qint64 TagLengthGuard::countGood(const char* data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i) {
        if (m_place == Place::Text) {
            const void* const tag = std::memchr(data + i, '<', static_cast<size_t>(size - i));
            if (!tag)
                return size;
            i = static_cast<const char*>(tag) - data;
            enter(Place::TagStart);
            m_tagLength = 0;
            continue;
        }
        if (m_place == Place::Tag) {
            const char* const first = data + i;
            const char* const last = first + std::min(size - i, kMaxTagLength - m_tagLength);
            const qint64 plain = std::find_if(first, last, endsPlainMarkup) - first;
            m_tagLength += plain;
            i += plain;
            if (i == size)
                return size;
        }
        follow(data[i]);
        if (isInTag() && ++m_tagLength > kMaxTagLength)
            return i;
    }
    return size;
}

void TagLengthGuard::enter(Place place)
{
    m_place = place;
    m_lastBytes.clear();
}

void TagLengthGuard::follow(char byte)
{
    switch (m_place) {
    case Place::Text:
        break;
    case Place::TagStart:
        followStart(byte);
        break;
    case Place::Tag:
    case Place::Declaration:
        followMarkup(byte);
        break;
    case Place::Quoted:
        if (byte == m_quote)
            m_place = m_quotedPlace;
        break;
    case Place::Comment:
        followToEnd(byte, kCommentEnd);
        break;
    case Place::CData:
        followToEnd(byte, kCDataEnd);
        break;
    case Place::Instruction:
        followToEnd(byte, kInstructionEnd);
        break;
    }
}

void TagLengthGuard::followStart(char byte)
{
    const bool isElement = m_lastBytes.isEmpty() && byte != '!' && byte != '?';
    if (isElement) {
        m_place = Place::Tag;
        followMarkup(byte);
        return;
    }
    m_lastBytes += byte;
    const bool canBeSection =
        QByteArray::fromRawData(kCDataStart, sizeof kCDataStart - 1).startsWith(m_lastBytes) ||
        QByteArray::fromRawData(kCommentStart, sizeof kCommentStart - 1).startsWith(m_lastBytes);
    if (m_lastBytes == kCommentStart) {
        enter(Place::Comment);
    } else if (m_lastBytes == kCDataStart) {
        enter(Place::CData);
    } else if (m_lastBytes == "?") {
        enter(Place::Instruction);
    } else if (!canBeSection) {
        m_place = m_lastBytes.startsWith('!') ? Place::Declaration : Place::Tag;
        followMarkup(byte);
    }
}

void TagLengthGuard::followMarkup(char byte)
{
    // A declaration of the document type holds others in brackets.
    if (byte == '>' || (byte == '[' && m_place == Place::Declaration)) {
        m_place = Place::Text;
    } else if (byte == '"' || byte == '\'') {
        m_quotedPlace = m_place;
        m_place = Place::Quoted;
        m_quote = byte;
    }
}

void TagLengthGuard::followToEnd(char byte, const char* end)
{
    m_lastBytes += byte;
    if (m_lastBytes.size() > kEndLength)
        m_lastBytes.remove(0, 1);
    if (m_lastBytes.endsWith(end))
        m_place = Place::Text;
}
