// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ChartFixtures.h"

#include <QStringList>
#include <QTimer>

/// `count` results, `spacingS` seconds apart, with values that rise from 0 to 9 over and over.
inline QVector<QSharedPointer<CFieldIntensityResult>> ramp(int count, double spacingS, double startS = 0.0)
{
    QVector<QSharedPointer<CFieldIntensityResult>> results;
    for (int i = 0; i < count; ++i) {
        const auto v = static_cast<float>(i % 10);
        results.append(makeResult(toNanoseconds(startS + i * spacingS), {v, v, v, v, v, 0.0F}));
    }
    return results;
}

inline QTimer* timerOf(const QObject& chart)
{
    return chart.findChild<QTimer*>();
}

/// A chart whose timer rests, so that only the test redraws.
struct QuietChart : PlainChart
{
    explicit QuietChart(CMeasurementParameters* parameters) : PlainChart(parameters)
    {
        timerOf(*this)->stop();
    }
};

/// Writes down every signal of a chart, in order, with its value.
class SignalLog : public QObject
{
public:
    explicit SignalLog(CChart2DFieldsData* chart) : m_chart(chart)
    {
        using Base = CChart2D;
        using Fields = CChart2DFieldsData;
        add(&Base::XmaxChanged, "Xmax");
        add(&Base::XminChanged, "Xmin");
        add(&Base::VisibleChanged, "Visible");
        add(&Base::YmaxChanged, "Ymax");
        add(&Base::YminChanged, "Ymin");
        add(&Base::YmaxAllSignalChanged, "YmaxAllSignal");
        add(&Base::YminAllSignalChanged, "YminAllSignal");
        add(&Base::FirstDataInitChanged, "FirstDataInit");
        add(&Base::YminMaxResetedChanged, "YminMaxReseted");
        add(&Fields::MeasureResultCountChanged, "MeasureResultCount");
        add(&Fields::MeasureResultMinXChanged, "MeasureResultMinX");
        add(&Fields::MeasureResultMaxXChanged, "MeasureResultMaxX");
        add(&Fields::MinDeltaAxisXChanged, "MinDeltaAxisX");
        add(&Fields::XmaxDateChanged, "XmaxDate");
        add(&Fields::XminDateChanged, "XminDate");
        add(&Fields::XmaxTimeChanged, "XmaxTime");
        add(&Fields::XminTimeChanged, "XminTime");
        add(&Fields::DownsampledSignalLengthChanged, "DownsampledSignalLength");
        add(&Fields::XTickCountChanged, "XTickCount");
        add(&Fields::YTickCountChanged, "YTickCount");
        add(&Fields::NumberValidPointsChanged, "NumberValidPoints");
        addPlain(&Base::refreshLimitSliderX, "refreshLimitSliderX");
        addPlain(&Base::refreshLimitSliderY, "refreshLimitSliderY");
        addPlain(&Fields::clearCharts, "clearCharts");
        connect(chart, &QAbstractItemModel::modelAboutToBeReset, this,
                [this] { lines.append(QStringLiteral("about to reset")); });
        connect(chart, &QAbstractItemModel::modelReset, this,
                [this] { lines.append(QStringLiteral("reset")); });
    }

    QStringList lines;

private:
    template <class Class, class Argument> void add(void (Class::*changed)(Argument), const char* name)
    {
        connect(m_chart, changed, this, [this, name](Argument value) {
            lines.append(QString::fromLatin1(name) + QLatin1Char(' ') + QVariant(value).toString());
        });
    }
    template <class Class> void addPlain(void (Class::*emitted)(), const char* name)
    {
        connect(m_chart, emitted, this, [this, name] { lines.append(QString::fromLatin1(name)); });
    }

    CChart2DFieldsData* m_chart;
};
