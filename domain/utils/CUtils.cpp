// SPDX-License-Identifier: GPL-3.0-or-later
#include "CUtils.h"

#include "CUnits.h"
#include "EnumTexts.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QSysInfo>
#include <QTextStream>
#include <QTouchDevice>

#include <cmath>

namespace {

constexpr int kDefaultDigits = 5;
/// From this many integer digits on, decimals are not shown.
constexpr int kDigitsWithoutDecimals = 4;
/// Width that left padding fills, counted in digits and sign.
constexpr int kPaddedDigits = 7;
constexpr int kAlignedWidth = 12;
constexpr int kBoxSize = 200;

QString flooredText(double value)
{
    return QString::number(std::floor(value), 'f', 0);
}

bool hasNoIntegerPart(double value)
{
    return std::floor(value) == 0 || (value > -1 && value < 0);
}

/// A box of the standard look. The base class fits its size to the text, in which a minimum size is lost.
class MessageBox : public QMessageBox
{
public:
    MessageBox(const QString& text, const QString& informativeText, Icon icon)
    {
        setText(text);
        setInformativeText(informativeText);
        setIcon(icon);
    }

protected:
    bool event(QEvent* event) override
    {
        const bool result = QMessageBox::event(event);
        if (event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest)
            setFixedSize(size().expandedTo({kBoxSize, kBoxSize}));
        return result;
    }
};

} // namespace

CUtils::CUtils(QObject* parent) : QObject(parent) {}

QString CUtils::getUnitText(int unit)
{
    return UnitToText(static_cast<CUnits::UnitType>(unit));
}

QString CUtils::getTriggerText(int trigger)
{
    return TriggerModeToText(static_cast<CTrigger::TriggerMode>(trigger));
}

QString CUtils::doubleToStringPointAlignment(double value)
{
    const QString integerText = flooredText(value);
    const int intLength = hasNoIntegerPart(value) ? 0 : integerText.length() - (value < 0 ? 1 : 0);
    QString result(qMax(0, kPaddedDigits - integerText.length()), QLatin1Char(' '));
    if (intLength >= kDigitsWithoutDecimals)
        result += integerText;
    else
        result += QString::number(value, 'f', kDigitsWithoutDecimals - intLength);
    return result.leftJustified(kAlignedWidth);
}

QString CUtils::doubleToString(double value, int significantNb, bool leftSpacePadding)
{
    const bool isNegative = value < 0;
    const int digits = significantNb < 0 ? kDefaultDigits : significantNb;
    const QString integerText = flooredText(value);
    const int intLength = hasNoIntegerPart(value) ? 1 : integerText.length() - (isNegative ? 1 : 0);
    // A negative number of decimals gives Qt's default of six.
    QString result =
        intLength >= kDigitsWithoutDecimals ? integerText : QString::number(value, 'f', digits - intLength);
    const int paddedLength = digits + (isNegative ? 1 : 0);
    if (leftSpacePadding && paddedLength < kPaddedDigits)
        result.prepend(QString(kPaddedDigits - paddedLength, QLatin1Char(' ')));
    return result;
}

QString CUtils::doubleToString(double value, int significantNb)
{
    return doubleToString(value, significantNb, false);
}

QString CUtils::doubleToString(double value)
{
    return doubleToString(value, kDefaultDigits, false);
}

QString CUtils::intToString(double value)
{
    return QString::number(value, 'g', 6);
}

QString CUtils::fileNameFromPath(QString path)
{
    return QFileInfo(path).fileName();
}

bool CUtils::isTouchDevice()
{
    return !QTouchDevice::devices().isEmpty();
}

bool CUtils::isUnix()
{
    return IsMac() || isLinux();
}

bool CUtils::isLinux()
{
    return QSysInfo::kernelType() == QLatin1String("linux");
}

bool CUtils::IsMac()
{
    return QSysInfo::kernelType() == QLatin1String("darwin");
}

void CUtils::saveFile(QString path, QString text)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) {
        ShowError(tr("Could not save file"), tr("Could not open file %1").arg(path));
        return;
    }
    QTextStream stream(&file);
    stream << text;
    stream.flush();
    file.close();
}

QString CUtils::loadFile(QString path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ShowError(tr("Could not load file"), tr("Could not open file %1").arg(path));
        return {};
    }
    // As the constructor of QString takes bytes: up to the first zero byte.
    return QString::fromUtf8(file.readAll().constData());
}

bool CUtils::AskConfirmation(const QString& text, const QString& informativeText, DefaultButton defaultButton)
{
    MessageBox box(text, informativeText, QMessageBox::Warning);
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.setDefaultButton(defaultButton == DefaultButton::Ok ? QMessageBox::Ok : QMessageBox::Cancel);
    box.button(QMessageBox::Ok)->setText(tr("OK"));
    box.button(QMessageBox::Cancel)->setText(tr("Cancel"));
    return box.exec() == QMessageBox::Ok;
}

void CUtils::ShowInformation(const QString& text, const QString& informativeText)
{
    MessageBox box(text, informativeText, QMessageBox::Information);
    box.setStandardButtons(QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    box.exec();
}

void CUtils::ShowError(const QString& text, const QString& informativeText)
{
    MessageBox box(text, informativeText, QMessageBox::Critical);
    box.exec();
}
