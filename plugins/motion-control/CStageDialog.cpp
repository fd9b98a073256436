// SPDX-License-Identifier: MIT
#include "CStageDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSerialPortInfo>
#include <QSpinBox>

namespace {

constexpr int kStageBaudRates[] = {9600, 19200, 38400, 57600, 115200, 230400, 250000, 500000, 1000000};
constexpr double kStageMaxLength = 100000;
constexpr double kStageMaxFeed = 1000000;
constexpr int kStageMaxSettleMs = 600000;
constexpr int kStageMaxLines = 10000;
constexpr int kStageDecimals = 3;
constexpr const char* kStageAxes[] = {"X", "Y", "Z"};

/// What tests and screen readers know a field by.
template <class Field> Field* named(Field* field, const char* name, const QString& label)
{
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(label);
    return field;
}

} // namespace

CStageDialog::CStageDialog(const QString& machineName, const StageSettings& settings, bool hasPath,
                           QWidget* parent)
    : QDialog(parent), m_settings(settings)
{
    setObjectName(QStringLiteral("stageDialog"));
    setWindowTitle(machineName);
    setWindowModality(Qt::ApplicationModal);
    auto* const form = new QFormLayout(this);
    auto* const note = new QLabel(tr("The probe will be moved by this machine. See that its way is free."));
    note->setWordWrap(true);
    form->addRow(note);
    addPort(*form);
    m_feed =
        addNumber(*form, tr("Feed (0: fastest)"), "stageFeed", settings.feed, kStageMaxFeed, tr(" mm/min"));
    m_settle = named(new QSpinBox, "stageSettle", tr("Time to settle"));
    m_settle->setRange(0, kStageMaxSettleMs);
    m_settle->setSuffix(tr(" ms"));
    m_settle->setValue(settings.settleMs);
    form->addRow(tr("Time to settle"), m_settle);
    m_offset = addPlace(*form, tr("Offset (mm)"), "stageOffset", settings.offset);
    m_home = named(new QCheckBox(tr("Home the machine first")), "stageHome", tr("Home the machine first"));
    m_home->setChecked(settings.isHoming);
    form->addRow(m_home);
    m_unlock = named(new QCheckBox(tr("Unlock it after an alarm (GRBL)")), "stageUnlock",
                     tr("Unlock it after an alarm (GRBL)"));
    m_unlock->setChecked(settings.isUnlocking);
    form->addRow(m_unlock);
    if (hasPath)
        addPath(*form);

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_accept = named(buttons->button(QDialogButtonBox::Ok), "stageAccept", tr("OK"));
    named(buttons->button(QDialogButtonBox::Cancel), "stageCancel", tr("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    const auto allowAccept = [this](const QString& port) { m_accept->setEnabled(!port.trimmed().isEmpty()); };
    connect(m_port, &QComboBox::editTextChanged, this, allowAccept);
    allowAccept(m_port->currentText());
}

void CStageDialog::addPort(QFormLayout& form)
{
    m_port = named(new QComboBox, "stagePort", tr("Port"));
    m_port->setEditable(true);
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& port : ports)
        m_port->addItem(port.systemLocation());
    // None is chosen by itself: it would be written to.
    m_port->setCurrentIndex(-1);
    m_port->setEditText(m_settings.port);
    form.addRow(tr("Port"), m_port);
    m_baudRate = named(new QComboBox, "stageBaudRate", tr("Speed (baud)"));
    m_baudRate->setEditable(true);
    m_baudRate->setValidator(new QIntValidator(1, std::numeric_limits<int>::max(), m_baudRate));
    for (const int rate : kStageBaudRates)
        m_baudRate->addItem(QString::number(rate));
    m_baudRate->setEditText(QString::number(m_settings.baudRate));
    form.addRow(tr("Speed (baud)"), m_baudRate);
}

void CStageDialog::addPath(QFormLayout& form)
{
    m_from = addPlace(form, tr("Path from (mm)"), "stageFrom", m_settings.scanFrom);
    m_to = addPlace(form, tr("Path to (mm)"), "stageTo", m_settings.scanTo);
    m_lines = named(new QSpinBox, "stageLines", tr("Lines"));
    m_lines->setRange(1, kStageMaxLines);
    m_lines->setValue(m_settings.scanLines);
    form.addRow(tr("Lines"), m_lines);
    m_spacing = addNumber(form, tr("Distance of two blocks"), "stageSpacing", m_settings.scanSpacing,
                          kStageMaxLength, tr(" mm"));
    m_scanFeed = addNumber(form, tr("Feed on the path"), "stageScanFeed", m_settings.scanFeed, kStageMaxFeed,
                           tr(" mm/min"));
}

QDoubleSpinBox* CStageDialog::addNumber(QFormLayout& form, const QString& label, const char* name,
                                        double value, double max, const QString& suffix)
{
    auto* const field = named(new QDoubleSpinBox, name, label);
    field->setDecimals(kStageDecimals);
    field->setRange(0, max);
    field->setSuffix(suffix);
    field->setValue(value);
    form.addRow(label, field);
    return field;
}

CStageDialog::PlaceFields CStageDialog::addPlace(QFormLayout& form, const QString& label, const char* name,
                                                 const StagePlace& place)
{
    PlaceFields fields{};
    auto* const row = new QHBoxLayout;
    for (size_t axis = 0; axis < fields.size(); ++axis) {
        const QString fieldLabel = label + QLatin1Char(' ') + QLatin1String(kStageAxes[axis]);
        fields[axis] =
            named(new QDoubleSpinBox, (QByteArray(name) + kStageAxes[axis]).constData(), fieldLabel);
        fields[axis]->setDecimals(kStageDecimals);
        fields[axis]->setRange(-kStageMaxLength, kStageMaxLength);
        fields[axis]->setPrefix(QLatin1String(kStageAxes[axis]) + QLatin1Char(' '));
        fields[axis]->setValue(place[axis]);
        row->addWidget(fields[axis]);
    }
    form.addRow(label, row);
    return fields;
}

StagePlace CStageDialog::placeOf(const PlaceFields& fields)
{
    return {fields[0]->value(), fields[1]->value(), fields[2]->value()};
}

StageSettings CStageDialog::Settings() const
{
    StageSettings settings = m_settings;
    settings.port = m_port->currentText().trimmed();
    settings.baudRate = std::max(1, m_baudRate->currentText().toInt());
    settings.feed = m_feed->value();
    settings.settleMs = m_settle->value();
    settings.isHoming = m_home->isChecked();
    settings.isUnlocking = m_unlock->isChecked();
    settings.offset = placeOf(m_offset);
    if (m_lines) {
        settings.scanFrom = placeOf(m_from);
        settings.scanTo = placeOf(m_to);
        settings.scanLines = m_lines->value();
        settings.scanSpacing = m_spacing->value();
        settings.scanFeed = m_scanFeed->value();
    }
    return settings;
}
