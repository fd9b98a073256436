// SPDX-License-Identifier: MIT
#pragma once

#include "CBprimeResult.h"
#include "CFieldIntensityResult.h"
#include "KestrixApi.h"

#include <QObject>
#include <QSharedPointer>
#include <QStringList>
#include <QVector>

/// What an instrument delivers: samples in time order with their reference direction. Travels by
/// QSharedPointer only; after the emit it belongs to the main thread, and only its `Comment` and the samples'
/// `dBConverted` still change. A block without samples is legal.
class KESTRIX_API CMeasureBlock : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Comment READ Comment WRITE SetComment NOTIFY CommentChanged)

public:
    explicit CMeasureBlock(QObject* parent = nullptr);

    QString Comment() const { return m_comment; }
    void SetComment(const QString& comment);

    /// The samples as text, one line each with eight columns joined by `separator`: date and time with nine
    /// decimals of the second, B, B.B', Bx, By, Bz, temperature, dB. No line break behind the last; empty
    /// without samples.
    QString FormatBlockAsText(const QString& separator) const;

    /// Column headings that go with `FormatBlockAsText`.
    static QStringList ColumnHeadings();

    QVector<QSharedPointer<CFieldIntensityResult>> Results;
    CBprimeResult Bprime;

signals:
    void CommentChanged(const QString& comment);

private:
    QString m_comment;
};

Q_DECLARE_METATYPE(QSharedPointer<CMeasureBlock>)
