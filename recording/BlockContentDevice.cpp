// SPDX-License-Identifier: GPL-3.0-or-later
#include "BlockContentDevice.h"

#include "RecordFormat.h"

#include <QByteArrayMatcher>

#include <algorithm>
#include <cstring>

namespace {

using RecordFormat::kMeasurements;

constexpr int kPieceSize = 65536;
/// Bytes. The content of a larger block is left to the XML reader, which needs no memory for what it skips.
constexpr int kMaxContent = 8000000;
constexpr int kMaxElements = 8;
/// Bytes of a name with one character on either side, less one: what may be the start of one is kept back.
const int kKeptBack = kMeasurements.size() + 1;

/// Walks over the content of a block, which is not empty and has the end tag behind it.
class Cursor
{
public:
    Cursor(const char* begin, const char* end) : m_position(begin), m_end(end) {}

    bool isAtEnd() const { return m_position == m_end; }
    /// Steps over the text, which must stand here.
    bool take(QLatin1String text)
    {
        const bool isHere = m_end - m_position >= text.size() &&
                            std::memcmp(m_position, text.data(), static_cast<size_t>(text.size())) == 0;
        if (isHere)
            m_position += text.size();
        return isHere;
    }
    void skipSpace()
    {
        takeWhile([](char byte) { return byte == ' ' || byte == '\n' || byte == '\t'; });
    }
    QLatin1String takeLowercase()
    {
        return takeWhile([](char byte) { return byte >= 'a' && byte <= 'z'; });
    }
    /// All in front of the next tag.
    QLatin1String takeText()
    {
        const char* const begin = m_position;
        m_position = findTag(begin, m_end);
        return QLatin1String(begin, static_cast<int>(m_position - begin));
    }

    static const char* findTag(const char* begin, const char* end)
    {
        const void* const tag = std::memchr(begin, '<', static_cast<size_t>(end - begin));
        return tag ? static_cast<const char*>(tag) : end;
    }

private:
    template <class Predicate> QLatin1String takeWhile(Predicate isGood)
    {
        const char* const begin = m_position;
        m_position = std::find_if_not(begin, m_end, isGood);
        return QLatin1String(begin, static_cast<int>(m_position - begin));
    }

    const char* m_position;
    const char* m_end;
};

bool isPlain(QLatin1String text)
{
    // Without branches, so that the compiler makes it a loop over many bytes at once.
    quint8 bad = 0;
    for (int i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<quint8>(text.data()[i]);
        const quint8 isUnprintable = (byte < ' ') | (byte > '~');
        const quint8 isSpace = (byte == '\n') | (byte == '\t');
        bad |= (isUnprintable & (isSpace ^ 1)) | (byte == '&') | (byte == '>');
    }
    return bad == 0;
}

bool takeElement(Cursor& cursor, BlockContentDevice::Element& element)
{
    const QLatin1String tagEnd(">");
    if (!cursor.take(QLatin1String("<")))
        return false;
    element.name = cursor.takeLowercase();
    if (cursor.take(QLatin1String(" unit=\""))) {
        cursor.takeLowercase();
        if (!cursor.take(QLatin1String("\"")))
            return false;
    }
    if (element.name.isEmpty() || !cursor.take(tagEnd))
        return false;
    element.text = cursor.takeText();
    return isPlain(element.text) && cursor.take(QLatin1String("</")) && cursor.take(element.name) &&
           cursor.take(tagEnd);
}

} // namespace

BlockContentDevice::BlockContentDevice(QIODevice* source, QObject* parent)
    : QIODevice(parent), m_source(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool BlockContentDevice::atEnd() const
{
    return available() == 0 && (m_isSourceAtEnd || m_source->atEnd());
}

qint64 BlockContentDevice::readData(char* data, qint64 maxSize)
{
    m_isBehindStartTag = false;
    // A reader in small pieces would get names in two.
    if (maxSize <= kKeptBack)
        forgoPlainContent();
    while (available() <= kKeptBack && fill())
        continue;
    if (available() == 0)
        return -1;
    const int size = lengthUpToBlock(static_cast<int>(std::min<qint64>(available(), maxSize)));
    std::copy_n(m_buffer.constData() + m_begin, size, data);
    m_begin += size;
    return size;
}

qint64 BlockContentDevice::writeData(const char* data, qint64 size)
{
    Q_UNUSED(data)
    Q_UNUSED(size)
    return -1;
}

bool BlockContentDevice::fill()
{
    if (m_isSourceAtEnd)
        return false;
    m_buffer.remove(0, m_begin);
    m_endTag -= m_begin;
    m_begin = 0;
    const int before = m_buffer.size();
    m_buffer.resize(before + std::max(kPieceSize, before));
    const qint64 size =
        std::max<qint64>(m_source->read(m_buffer.data() + before, m_buffer.size() - before), 0);
    m_buffer.resize(before + static_cast<int>(size));
    m_isSourceAtEnd = size == 0;
    return !m_isSourceAtEnd;
}

int BlockContentDevice::lengthUpToBlock(int size)
{
    if (!m_isPlainPossible)
        return size;
    static const QByteArrayMatcher nameMatcher(kMeasurements.data(), kMeasurements.size());
    const char* const bytes = m_buffer.constData() + m_begin;
    int name = -1;
    while ((name = nameMatcher.indexIn(bytes, size, name + 1)) >= 0) {
        const int behind = name + kMeasurements.size();
        if (behind == size)
            break;
        const char before = name == 0 ? '\0' : bytes[name - 1];
        if (before == '<' && bytes[behind] == '>') {
            m_isBehindStartTag = true;
            return behind + 1;
        }
        // A start tag of another form, which ends somewhere else.
        if (before == '<' || before == ':') {
            forgoPlainContent();
            return size;
        }
    }
    const bool isAllThereIs = m_isSourceAtEnd && size == available();
    return isAllThereIs ? size : size - kKeptBack;
}

bool BlockContentDevice::findEndTag()
{
    static const QByteArray endTag = QByteArray("</") + kMeasurements.data() + '>';
    int from = 0; // behind the beginning
    for (;;) {
        const char* const end = m_buffer.constData() + m_buffer.size();
        const char* tag = Cursor::findTag(m_buffer.constData() + m_begin + from, end);
        for (; end - tag >= endTag.size(); tag = Cursor::findTag(tag + 1, end)) {
            if (std::memcmp(tag, endTag.constData(), static_cast<size_t>(endTag.size())) == 0) {
                m_endTag = static_cast<int>(tag - m_buffer.constData());
                return true;
            }
        }
        from = static_cast<int>(tag - m_buffer.constData()) - m_begin;
        if (available() > kMaxContent || !fill())
            return false;
    }
}

BlockContentDevice::Elements BlockContentDevice::plainElements()
{
    if (!m_isPlainPossible || !m_isBehindStartTag)
        return {};
    // The search may go far beyond a block that has its end tag in another form.
    if (m_endTag < m_begin && !findEndTag()) {
        forgoPlainContent();
        return {};
    }
    const char* const bytes = m_buffer.constData();
    Cursor cursor(bytes + m_begin, bytes + m_endTag);
    Elements elements;
    for (cursor.skipSpace(); !cursor.isAtEnd(); cursor.skipSpace()) {
        Element element;
        if (elements.size() == kMaxElements || !takeElement(cursor, element))
            return {};
        elements.append(element);
    }
    return elements;
}

void BlockContentDevice::skipPlainElements()
{
    m_isBehindStartTag = false;
    m_begin = m_endTag;
}
