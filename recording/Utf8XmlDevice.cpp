// SPDX-License-Identifier: GPL-3.0-or-later
#include "Utf8XmlDevice.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>

namespace {

/// Bytes, in which the XML declaration must end.
constexpr qint64 kHeadSize = 4096;
constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";
const QLatin1String kDeclarationStart("<?xml");
const QLatin1String kDeclarationEnd("?>");

/// MIB numbers of encodings.
enum Encoding {
    Utf8 = 106,
    Utf16BigEndian = 1013,
    Utf16LittleEndian = 1014,
    Utf32BigEndian = 1018,
    Utf32LittleEndian = 1019
};

struct Start
{
    QByteArray bytes;
    Encoding encoding;
};

/// The codec that the first bytes tell; null for one of single bytes.
QTextCodec* wideCodecFor(const QByteArray& head)
{
    static const Start starts[] = {
        {QByteArray("\xFF\xFE\0\0", 4), Utf32LittleEndian}, {QByteArray("\0\0\xFE\xFF", 4), Utf32BigEndian},
        {QByteArray("<\0\0\0", 4), Utf32LittleEndian},      {QByteArray("\0\0\0<", 4), Utf32BigEndian},
        {QByteArray("\xFF\xFE", 2), Utf16LittleEndian},     {QByteArray("\xFE\xFF", 2), Utf16BigEndian},
        {QByteArray("<\0", 2), Utf16LittleEndian},          {QByteArray("\0<", 2), Utf16BigEndian},
    };
    for (const Start& start : starts) {
        if (head.startsWith(start.bytes))
            return QTextCodec::codecForMib(start.encoding);
    }
    return nullptr;
}

/// Length of the XML declaration at the front; 0 without one, negative if it does not end in the text.
int declarationLength(const QString& text)
{
    const int nameLength = kDeclarationStart.size();
    if (!text.startsWith(kDeclarationStart) || text.size() == nameLength || !text[nameLength].isSpace())
        return 0;
    const int end = text.indexOf(kDeclarationEnd);
    return end < 0 ? -1 : end + kDeclarationEnd.size();
}

QString withoutEncoding(QString declaration)
{
    static const QRegularExpression encoding(QStringLiteral("\\s+encoding\\s*=\\s*(\"[^\"]*\"|'[^']*')"));
    return declaration.remove(encoding);
}

/// The name of the encoding in a declaration; null if there is more than a simple name.
QString encodingName(const QString& declaration)
{
    static const QRegularExpression encoding(
        QStringLiteral("\\sencoding\\s*=\\s*([\"'])([A-Za-z][A-Za-z0-9._-]*)\\1"));
    const bool isOnlyOne = declaration.count(QLatin1String("encoding")) == 1;
    return isOnlyOne ? encoding.match(declaration).captured(2) : QString();
}

} // namespace

Utf8XmlDevice::Utf8XmlDevice(QIODevice* source, QObject* parent) : QIODevice(parent), m_source(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

Utf8XmlDevice::~Utf8XmlDevice() = default;

bool Utf8XmlDevice::atEnd() const
{
    return m_isRefused || (m_pending.isEmpty() && m_source->atEnd());
}

qint64 Utf8XmlDevice::readData(char* data, qint64 maxSize)
{
    if (!m_isHeadRead)
        readHead();
    if (m_isRefused)
        return -1;
    if (m_pending.isEmpty() && !m_decoder)
        return m_source->read(data, maxSize);
    // A piece may end in the middle of a character and give no text.
    while (m_pending.isEmpty()) {
        const QByteArray bytes = m_source->read(kHeadSize);
        if (bytes.isEmpty())
            return -1;
        m_pending = m_decoder->toUnicode(bytes).toUtf8();
    }
    const auto size = static_cast<int>(std::min<qint64>(maxSize, m_pending.size()));
    std::copy_n(m_pending.constData(), size, data);
    m_pending.remove(0, size);
    return size;
}

qint64 Utf8XmlDevice::writeData(const char* data, qint64 size)
{
    Q_UNUSED(data)
    Q_UNUSED(size)
    return -1;
}

void Utf8XmlDevice::readHead()
{
    m_isHeadRead = true;
    QByteArray head;
    while (head.size() < kHeadSize) {
        const QByteArray bytes = m_source->read(kHeadSize - head.size());
        if (bytes.isEmpty())
            break;
        head += bytes;
    }

    if (QTextCodec* const wide = wideCodecFor(head)) {
        m_decoder.reset(wide->makeDecoder());
        convertHead(head);
        return;
    }
    const QByteArray unmarked = head.startsWith(kUtf8Mark) ? head.mid(sizeof kUtf8Mark - 1) : head;
    const QString text = QString::fromLatin1(unmarked);
    const int length = declarationLength(text);
    if (length < 0) {
        refuse();
        return;
    }
    const QString declaration = text.left(length);
    if (!declaration.contains(QLatin1String("encoding"))) {
        m_pending = head;
        return;
    }
    QTextCodec* const codec = QTextCodec::codecForName(encodingName(declaration).toLatin1());
    if (!codec) {
        refuse();
    } else if (codec->mibEnum() == Utf8) {
        m_pending = head;
    } else {
        m_decoder.reset(codec->makeDecoder());
        convertHead(unmarked);
    }
}

void Utf8XmlDevice::convertHead(const QByteArray& head)
{
    QString text = m_decoder->toUnicode(head);
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    const int length = declarationLength(text);
    const QString declaration = withoutEncoding(text.left(std::max(length, 0)));
    if (length < 0 || declaration.contains(QLatin1String("encoding")))
        refuse();
    else
        m_pending = (declaration + text.mid(length)).toUtf8();
}

void Utf8XmlDevice::refuse()
{
    m_isRefused = true;
}
