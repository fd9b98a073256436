// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIODevice>

/// Passes an XML file in UTF-8 on and ends it early at a tag that is longer than any of a record. The XML
/// reader compares each attribute of a tag with all others, so that one tag of a few megabytes would keep it
/// busy for hours. Comments, CDATA sections, processing instructions, declarations and texts may have any
/// length.
class TagLengthGuard : public QIODevice
{
    Q_OBJECT

public:
    /// `source` is open and must outlive the guard, which is open for reading at once.
    explicit TagLengthGuard(QIODevice* source, QObject* parent = nullptr);

    bool isSequential() const override { return true; }
    bool atEnd() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    enum class Place { Text, TagStart, Tag, Declaration, Quoted, Comment, CData, Instruction };

    /// Number of bytes in front of the one that makes a tag too long, or all.
    qint64 countGood(const char* data, qint64 size);
    void follow(char byte);
    void followStart(char byte);
    void followMarkup(char byte);
    void followToEnd(char byte, const char* end);
    void enter(Place place);
    bool isInTag() const
    {
        return m_place == Place::TagStart || m_place == Place::Tag ||
               (m_place == Place::Quoted && m_quotedPlace == Place::Tag);
    }

    QIODevice* m_source;
    Place m_place = Place::Text;
    char m_quote = 0;
    Place m_quotedPlace = Place::Tag; ///< where the quoted text stands
    QByteArray m_lastBytes;           ///< as far as they decide the place
    qint64 m_tagLength = 0;
    bool m_isCutOff = false;
};
