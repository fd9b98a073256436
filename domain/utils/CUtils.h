// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

/// Text functions and platform questions for QML (context property "Utils") and the view models, and the
/// standard message boxes. Has no state; files and message boxes are for the main thread.
class CUtils : public QObject
{
    Q_OBJECT

public:
    explicit CUtils(QObject* parent = nullptr);

    Q_INVOKABLE QString getUnitText(int unit);
    Q_INVOKABLE QString getTriggerText(int trigger);
    /// A field of twelve characters with the point in a fixed column.
    Q_INVOKABLE QString doubleToStringPointAlignment(double value);
    /// About `significantNb` significant digits (5 if negative); four or more integer digits are shown
    /// floored and without decimals. With `leftSpacePadding`, blanks that line values up in a fixed font.
    Q_INVOKABLE QString doubleToString(double value, int significantNb, bool leftSpacePadding);
    Q_INVOKABLE QString doubleToString(double value, int significantNb);
    Q_INVOKABLE QString doubleToString(double value);
    /// General format with six digits, in spite of its name.
    Q_INVOKABLE QString intToString(double value);
    Q_INVOKABLE QString fileNameFromPath(QString path);
    Q_INVOKABLE bool isTouchDevice();
    Q_INVOKABLE bool isUnix();
    Q_INVOKABLE bool isLinux();
    /// Writes over the head of the file: a shorter text leaves the tail of the old content in place.
    Q_INVOKABLE void saveFile(QString path, QString text);
    /// The file's text, decoded as UTF-8; empty, after a message box, if it cannot be opened.
    Q_INVOKABLE QString loadFile(QString path);

    static bool IsMac();

    /// The button that Return presses.
    enum class DefaultButton { Ok, Cancel };

    /// Modal question with "OK" and "Cancel"; true on "OK".
    static bool AskConfirmation(const QString& text, const QString& informativeText,
                                DefaultButton defaultButton = DefaultButton::Cancel);
    static void ShowInformation(const QString& text, const QString& informativeText);
    static void ShowError(const QString& text, const QString& informativeText);
};
