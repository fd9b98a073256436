// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QMetaType>
#include <QObject>

/// Orientation of the probe, in degrees. Crosses signals by value.
class KESTRIX_API COrientation : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double Roll READ Roll WRITE SetRoll NOTIFY RollChanged)
    Q_PROPERTY(double Pitch READ Pitch WRITE SetPitch NOTIFY PitchChanged)
    Q_PROPERTY(double Yaw READ Yaw WRITE SetYaw NOTIFY YawChanged)

public:
    explicit COrientation(QObject* parent = nullptr);

    /// A copy is a fresh object with the same values; nothing else of the original comes along.
    COrientation(const COrientation& other);
    COrientation& operator=(const COrientation& other);

    double Roll() const { return m_roll; }
    double Pitch() const { return m_pitch; }
    double Yaw() const { return m_yaw; }

    void SetRoll(double value);
    void SetPitch(double value);
    void SetYaw(double value);

signals:
    void RollChanged(double value);
    void PitchChanged(double value);
    void YawChanged(double value);

private:
    double m_roll = 0;
    double m_pitch = 0;
    double m_yaw = 0;
};

Q_DECLARE_METATYPE(COrientation)
