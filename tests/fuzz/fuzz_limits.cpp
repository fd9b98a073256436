// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as an exposure limits file: nothing may crash or hang, and the extremes must contain every band.

#include "CLimitsFileOwner.h"
#include "LimitsXmlFile.h"

#include <QApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdlib>

namespace {

class COwner final : public CLimitsFileOwner
{
public:
    explicit COwner(QString path) : m_path(std::move(path)) {}

    CUnits::UnitType LimitsDisplayUnits() const override { return m_units; }
    QString LimitsFilePath() const override { return m_path; }
    void ForgetLimitsFile() override { m_path.clear(); }
    bool LimitsFileLoaded() const override { return true; }
    void SetLimitsFileLoaded(bool /*value*/) override {}

    void SetUnits(CUnits::UnitType units) { m_units = units; }

private:
    QString m_path;
    CUnits::UnitType m_units = CUnits::MICRO_TESLA;
};

/// Ends every message box as soon as it waits for an answer.
class BoxCloser : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const box = qobject_cast<QMessageBox*>(watched);
        if (box != nullptr && event->type() == QEvent::Show)
            QTimer::singleShot(0, box, &QMessageBox::reject);
        return false;
    }
};

void check(const LimitsXmlFile& file)
{
    for (const auto& range : file.Ranges()) {
        const double frequency = range->UpperFrequencyLimitValue();
        const double exposure = range->ExposureLimitValue();
        if (frequency < file.LowestFrequency() || frequency > file.HighestFrequency() ||
            exposure < file.LowestExposure() || exposure > file.HighestExposure())
            std::abort();
    }
    if (file.LowestFrequency() > 0 || file.HighestFrequency() < 0 || file.LowestExposure() > 0 ||
        file.HighestExposure() < 0)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Both live as long as the process.
    static QApplication application(*argc, *argv);
    static BoxCloser closer;
    QApplication::instance()->installEventFilter(&closer);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("limits.xml"));
    QFile source(path);
    if (!source.open(QIODevice::WriteOnly))
        std::abort();
    source.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    source.close();

    COwner owner(path);
    LimitsXmlFile file(owner);
    file.ReadFile(path);
    check(file);
    file.Convert(false);
    check(file);
    const int numRanges = file.Ranges().size();
    owner.SetUnits(CUnits::GAUSS);
    file.OnOperationParameterUnitChanged(CUnits::GAUSS);
    check(file);
    if (file.Ranges().size() != numRanges || file.Converted() != (numRanges > 0))
        std::abort();
    return 0;
}
