// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QLatin1String>
#include <QVarLengthArray>

/// Passes an XML file in UTF-8 on, each read at most to the end of the next start tag of a record's block.
/// When the XML reader reports that tag it has read nothing behind it, and the content of the block can be
/// taken from here in one piece if it is as plain as in the files of this program: the XML reader takes
/// several times as long for a text as it takes to find the end of it.
///
/// Content is plain if it is of elements without children, of ASCII without entities and control characters,
/// and with no attribute but a unit. To the XML reader it means the same.
class BlockContentDevice : public QIODevice
{
    Q_OBJECT

public:
    struct Element
    {
        QLatin1String name;
        QLatin1String text;
    };
    using Elements = QVarLengthArray<Element, 4>;

    /// `source` is open and must outlive the device, which is open for reading at once.
    explicit BlockContentDevice(QIODevice* source, QObject* parent = nullptr);

    bool isSequential() const override { return true; }
    bool atEnd() const override;

    /// To be called where start tags may come from elsewhere than from the place that was read last: no
    /// content is plain any more.
    void forgoPlainContent() { m_isPlainPossible = false; }
    /// The elements of the block, to be asked for when the XML reader reports its start tag; none if its
    /// content is not plain. They are valid until the next read.
    Elements plainElements();
    /// Whoever has used these elements goes on behind them, at the end tag of the block.
    void skipPlainElements();

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    /// Reads more behind what has not been passed on yet. False at the end.
    bool fill();
    int available() const { return m_buffer.size() - m_begin; }
    /// Number of the bytes that may be passed on, of the first `size`.
    int lengthUpToBlock(int size);
    /// False if there is none, or too far away.
    bool findEndTag();

    QIODevice* m_source;
    QByteArray m_buffer;
    int m_begin = 0;   ///< of what has not been passed on
    int m_endTag = -1; ///< of a block, the last that was found
    bool m_isSourceAtEnd = false;
    bool m_isPlainPossible = true;
    bool m_isBehindStartTag = false;
};
