// SPDX-License-Identifier: MIT
#pragma once

#include "StageSettings.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QPushButton;
class QSpinBox;

/// Asks for the settings of a machine. A port that is in no list can be typed. No port is opened here.
class CStageDialog : public QDialog
{
    Q_OBJECT

public:
    /// `hasPath`: asks for the path of a mapper that does not stop, too.
    CStageDialog(const QString& machineName, const StageSettings& settings, bool hasPath,
                 QWidget* parent = nullptr);

    /// The settings given, with what was entered.
    StageSettings Settings() const;

private:
    using PlaceFields = std::array<QDoubleSpinBox*, 3>;

    void addPort(QFormLayout& form);
    void addPath(QFormLayout& form);
    QDoubleSpinBox* addNumber(QFormLayout& form, const QString& label, const char* name, double value,
                              double max, const QString& suffix);
    PlaceFields addPlace(QFormLayout& form, const QString& label, const char* name, const StagePlace& place);
    static StagePlace placeOf(const PlaceFields& fields);

    StageSettings m_settings;
    QComboBox* m_port = nullptr;
    QComboBox* m_baudRate = nullptr;
    QDoubleSpinBox* m_feed = nullptr;
    QSpinBox* m_settle = nullptr;
    QCheckBox* m_home = nullptr;
    QCheckBox* m_unlock = nullptr;
    PlaceFields m_offset{};
    // Null without a path.
    PlaceFields m_from{};
    PlaceFields m_to{};
    QSpinBox* m_lines = nullptr;
    QDoubleSpinBox* m_spacing = nullptr;
    QDoubleSpinBox* m_scanFeed = nullptr;
    QPushButton* m_accept = nullptr;
};
