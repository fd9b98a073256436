// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFieldIntensityResult.h"
#include "CMeasureBlock.h"
#include "TimestampParser.h"

#include <QSharedPointer>
#include <QString>
#include <QStringView>

/// Turns the `flux` text of a record into samples. Rows and columns form one flat list of tokens, cut at the
/// column separator and at newlines, so that a row of the wrong length shifts the columns behind it.
class FluxReader
{
public:
    /// Takes effect for the texts read from now on; the separator of a record without headings is ";". With
    /// one that makes no pattern, or one of unbounded work, texts have no samples.
    void setSeparator(const QString& separator);
    void setHasUncertaintyColumn(bool hasIt) { m_hasUncertaintyColumn = hasIt; }

    /// Appends the samples to the block. A text of white space only has none. Returns their number.
    int read(const QString& text, CMeasureBlock& block);

    /// To be called behind the last text of a block: gives back what its list of samples has in reserve.
    void finishBlock(CMeasureBlock& block);

private:
    void readToken(QStringView token);
    void startSample(QStringView timestamp);
    void setValue(tFlux value);
    void finishColumn();
    bool isAtValue() const;
    void splitAtCharacter(const QString& text);
    void splitAtPattern(const QString& text);

    QString m_separator = QStringLiteral(";");
    bool m_hasUncertaintyColumn = true;
    TimestampParser m_timestampParser;

    // State of the walk over one text.
    CMeasureBlock* m_block = nullptr;
    CFieldIntensityResult* m_result = nullptr;
    int m_column = 0;
    int m_samplesOfLastBlock = 0;
};
