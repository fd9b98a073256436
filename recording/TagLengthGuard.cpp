// SPDX-License-Identifier: GPL-3.0-or-later
#include "TagLengthGuard.h"

#include <cstring>

namespace {

constexpr qint64 kMaxTagLength = 4096;
constexpr char kCommentStart[] = "!--";
constexpr char kCommentEnd[] = "-->";
constexpr char kCDataStart[] = "![CDATA[";
constexpr char kCDataEnd[] = "]]>";
constexpr int kEndLength = 3;

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
            m_place = Place::TagStart;
            m_lastBytes.clear();
            m_tagLength = 0;
            continue;
        }
        follow(data[i]);
        if (isInTag() && ++m_tagLength > kMaxTagLength)
            return i;
    }
    return size;
}

void TagLengthGuard::follow(char byte)
{
    switch (m_place) {
    case Place::Text:
        break;
    case Place::TagStart:
        m_lastBytes += byte;
        if (m_lastBytes == kCommentStart) {
            m_place = Place::Comment;
            m_lastBytes.clear();
        } else if (m_lastBytes == kCDataStart) {
            m_place = Place::CData;
            m_lastBytes.clear();
        } else if (byte == '>') {
            m_place = Place::Text;
        } else if (!QByteArray::fromRawData(kCDataStart, sizeof kCDataStart - 1).startsWith(m_lastBytes) &&
                   !QByteArray::fromRawData(kCommentStart, sizeof kCommentStart - 1)
                        .startsWith(m_lastBytes)) {
            // A declaration of the document type holds tags of its own.
            m_place = m_lastBytes.startsWith('!') ? Place::Text : Place::Tag;
        }
        break;
    case Place::Tag:
        if (byte == '>') {
            m_place = Place::Text;
        } else if (byte == '"' || byte == '\'') {
            m_place = Place::Quoted;
            m_quote = byte;
        }
        break;
    case Place::Quoted:
        if (byte == m_quote)
            m_place = Place::Tag;
        break;
    case Place::Comment:
    case Place::CData:
        m_lastBytes += byte;
        if (m_lastBytes.size() > kEndLength)
            m_lastBytes.remove(0, 1);
        if (m_lastBytes == (m_place == Place::Comment ? kCommentEnd : kCDataEnd))
            m_place = Place::Text;
        break;
    }
}
