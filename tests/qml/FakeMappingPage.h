// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QQuaternion>
#include <QVector3D>
#include <QVector>

#include <cmath>

/// What the view of the mapped vectors asks of its page: the vectors of the history, one at a time, as the
/// current one.
class FakeMappingPage : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double XStart MEMBER xStart NOTIFY XStartChanged)
    Q_PROPERTY(double XStop MEMBER xStop NOTIFY XStopChanged)
    Q_PROPERTY(double YStart MEMBER yStart NOTIFY YStartChanged)
    Q_PROPERTY(double YStop MEMBER yStop NOTIFY YStopChanged)
    Q_PROPERTY(double ZStart MEMBER zStart NOTIFY ZStartChanged)
    Q_PROPERTY(double ZStop MEMBER zStop NOTIFY ZStopChanged)
    Q_PROPERTY(double Scale MEMBER scale NOTIFY ScaleChanged)
    Q_PROPERTY(double MaxScale MEMBER maxScale NOTIFY MaxScaleChanged)
    Q_PROPERTY(double PosX MEMBER posX NOTIFY PosXChanged)
    Q_PROPERTY(double PosY MEMBER posY NOTIFY PosYChanged)
    Q_PROPERTY(double PosZ MEMBER posZ NOTIFY PosZChanged)
    Q_PROPERTY(double QuatX MEMBER quatX NOTIFY QuatXChanged)
    Q_PROPERTY(double QuatY MEMBER quatY NOTIFY QuatYChanged)
    Q_PROPERTY(double QuatZ MEMBER quatZ NOTIFY QuatZChanged)
    Q_PROPERTY(double QuatScalar MEMBER quatScalar NOTIFY QuatScalarChanged)
    Q_PROPERTY(double SliderValueGraph3D MEMBER sliderValueGraph3D NOTIFY SliderValueGraph3DChanged)
    Q_PROPERTY(int MaxVectorCount MEMBER maxVectorCount NOTIFY MaxVectorCountChanged)

public:
    struct Vector
    {
        double scale = 0;
        QVector3D position;
        QQuaternion rotation;
    };

    /// A field of that direction and strength at a place.
    static Vector along(const QVector3D& direction, double scale, const QVector3D& position)
    {
        return {scale, position, QQuaternion::rotationTo(QVector3D(0, 1, 0), direction)};
    }

    Q_INVOKABLE void getComputeVector3D(int blockIndex)
    {
        asked.append(blockIndex);
        if (blockIndex >= 0 && blockIndex < history.size())
            makeCurrent(history.at(blockIndex));
    }

    void makeCurrent(const Vector& vector)
    {
        scale = vector.scale;
        posX = double(vector.position.x());
        posY = double(vector.position.y());
        posZ = double(vector.position.z());
        quatX = double(vector.rotation.x());
        quatY = double(vector.rotation.y());
        quatZ = double(vector.rotation.z());
        quatScalar = double(vector.rotation.scalar());
        emit ScaleChanged(scale);
        emit PosXChanged(posX);
        emit PosYChanged(posY);
        emit PosZChanged(posZ);
        emit QuatXChanged(quatX);
        emit QuatYChanged(quatY);
        emit QuatZChanged(quatZ);
        emit QuatScalarChanged(quatScalar);
    }

    /// A block is done: its vector is the current one and the youngest of the history.
    void append(const Vector& vector)
    {
        makeCurrent(vector);
        if (std::abs(scale) > maxScale)
            setProperty("MaxScale", std::abs(scale));
        history.append(vector);
        while (history.size() > maxVectorCount)
            history.removeFirst();
        emit newVectorToPlot();
    }

    double xStart = 0;
    double xStop = 1;
    double yStart = 0;
    double yStop = 1;
    double zStart = 0;
    double zStop = 1;
    double scale = 0;
    double maxScale = 2.220446049250313e-16;
    double posX = 0;
    double posY = 0;
    double posZ = 0;
    double quatX = 0;
    double quatY = 0;
    double quatZ = 0;
    double quatScalar = 0;
    double sliderValueGraph3D = 0.1;
    int maxVectorCount = 1000;
    QVector<Vector> history;
    QVector<int> asked; ///< the indices of all getComputeVector3D

signals:
    void XStartChanged(double value);
    void XStopChanged(double value);
    void YStartChanged(double value);
    void YStopChanged(double value);
    void ZStartChanged(double value);
    void ZStopChanged(double value);
    void ScaleChanged(double value);
    void MaxScaleChanged(double value);
    void PosXChanged(double value);
    void PosYChanged(double value);
    void PosZChanged(double value);
    void QuatXChanged(double value);
    void QuatYChanged(double value);
    void QuatZChanged(double value);
    void QuatScalarChanged(double value);
    void SliderValueGraph3DChanged(double value);
    void MaxVectorCountChanged(int value);
    void clear3DPlots();
    void reload3DPlots();
    void newVectorToPlot();
    void setVisibleUntilChart();
};
