// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasurementParameters.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

using namespace MetaObjectTable;

namespace {

using Event = std::pair<std::string, double>;

/// The couplings as a table of rules, worked off by a small interpreter: an independent second
/// implementation.
class Model
{
public:
    struct Rule
    {
        std::string target;
        std::set<std::string> silentDuring; ///< slots whose run keeps the rule quiet
        std::function<bool(Model&)> applies;
        std::function<double(Model&)> value;
        bool endsSlot = false; ///< an alternative that follows is not looked at
    };

    Model()
    {
        values = {{"AcquisitionRate", 0},   {"ImmediateAcquisitionRate", 0},
                  {"BlockSize", 1},         {"DisplayRate", 1},
                  {"FrequencyMin", 0},      {"FrequencyMax", 0},
                  {"NumberOfBins", 0},      {"TriggerMode", 2},
                  {"ApplyConfiguration", 1}};

        const auto modeIs = [](std::set<int> modes) {
            return [modes](Model& m) { return modes.count(static_cast<int>(m.values["TriggerMode"])) > 0; };
        };
        const auto both = [](auto first, auto second) {
            return [first, second](Model& m) { return first(m) && second(m); };
        };
        const auto ratePasses = [](Model& m) {
            return m.values["AcquisitionRate"] >= m.values["DisplayRate"] && m.values["DisplayRate"] > 0;
        };
        const auto binsPass = [](Model& m) {
            return m.values["FrequencyMax"] >= m.values["DisplayRate"] && m.values["DisplayRate"] > 0;
        };
        const auto blockSize = [](Model& m) {
            const double ratio = m.values["AcquisitionRate"] / m.values["DisplayRate"];
            return static_cast<double>(static_cast<quint16>(static_cast<qint64>(ratio)));
        };
        const auto displayRate = [](Model& m) { return m.values["AcquisitionRate"] / m.values["BlockSize"]; };
        const auto bins = [](Model& m) { return m.values["FrequencyMax"] / m.values["DisplayRate"]; };
        const auto always = [](Model&) { return true; };
        const auto positiveBlock = [](Model& m) { return m.values["BlockSize"] > 0; };
        const Rule binsRule{"NumberOfBins", {"NumberOfBins"}, binsPass, bins};

        rules["AcquisitionRate"] = {
            {"FrequencyMax",
             {"FrequencyMax"},
             always,
             [](Model& m) { return m.values["AcquisitionRate"] / 2; }},
            {"BlockSize", {"BlockSize"}, both(modeIs({1, 3}), ratePasses), blockSize},
            {"DisplayRate", {"DisplayRate"}, both(modeIs({2, 4}), positiveBlock), displayRate}};
        rules["BlockSize"] = {
            {"AcquisitionRate",
             {"AcquisitionRate", "DisplayRate"},
             modeIs({1}),
             [](Model& m) { return m.values["BlockSize"] * m.values["DisplayRate"]; },
             true},
            {"DisplayRate", {"DisplayRate"}, both(modeIs({2, 3, 4}), positiveBlock), displayRate}};
        rules["DisplayRate"] = {{"BlockSize", {"BlockSize", "AcquisitionRate"}, ratePasses, blockSize},
                                binsRule};
        rules["FrequencyMax"] = {{"AcquisitionRate",
                                  {"AcquisitionRate"},
                                  always,
                                  [](Model& m) { return 2 * m.values["FrequencyMax"]; }},
                                 binsRule};
        rules["FrequencyMin"] = {binsRule};
        rules["NumberOfBins"] = {
            {"DisplayRate",
             {"DisplayRate"},
             [](Model& m) {
                 return m.values["FrequencyMax"] >= m.values["NumberOfBins"] && m.values["NumberOfBins"] > 0;
             },
             [](Model& m) { return m.values["FrequencyMax"] / m.values["NumberOfBins"]; }}};
        rules["ImmediateAcquisitionRate"] = {{"FrequencyMax", {"FrequencyMax"}, always, [](Model& m) {
                                                  return m.values["ImmediateAcquisitionRate"] / 2;
                                              }}};
    }

    void assign(const std::string& name, double value)
    {
        if (values[name] == value)
            return;
        values[name] = value;
        if (name == "TriggerMode") {
            if (value == 2)
                run("ImmediateAcquisitionRate");
        } else if (name != "ImmediateAcquisitionRate" || values["TriggerMode"] == 2) {
            run(name);
        }
        // An observer hears of an assignment behind the object's own slot, which was connected first.
        events.emplace_back(name, value);
    }

    std::map<std::string, double> values;
    std::vector<Event> events;

private:
    void run(const std::string& slot)
    {
        const auto found = rules.find(slot);
        if (found == rules.end())
            return;
        const double remembered = values["ApplyConfiguration"];
        commit(0);
        running.insert(slot);
        for (const Rule& rule : found->second) {
            bool silent = false;
            for (const std::string& other : rule.silentDuring)
                silent = silent || running.count(other) > 0;
            if (silent || !rule.applies(*this))
                continue;
            assign(rule.target, rule.value(*this));
            if (rule.endsSlot)
                break;
        }
        commit(remembered);
        running.erase(slot);
    }

    void commit(double value)
    {
        if (values["ApplyConfiguration"] == value)
            return;
        values["ApplyConfiguration"] = value;
        events.emplace_back("ApplyConfiguration", value);
    }

    std::map<std::string, std::vector<Rule>> rules;
    std::set<std::string> running;
};

/// Records every change signal of the real object in the order of its emission.
class Recorder
{
public:
    explicit Recorder(CMeasurementParameters& parameters)
    {
        using P = CMeasurementParameters;
        record(parameters, "AcquisitionRate", &P::AcquisitionRateChanged);
        record(parameters, "ImmediateAcquisitionRate", &P::ImmediateAcquisitionRateChanged);
        record(parameters, "BlockSize", &P::BlockSizeChanged);
        record(parameters, "DisplayRate", &P::DisplayRateChanged);
        record(parameters, "FrequencyMin", &P::FrequencyMinChanged);
        record(parameters, "FrequencyMax", &P::FrequencyMaxChanged);
        record(parameters, "NumberOfBins", &P::NumberOfBinsChanged);
        record(parameters, "TriggerMode", &P::TriggerModeChanged);
        record(parameters, "ApplyConfiguration", &P::ApplyConfigurationChanged);
    }

    std::vector<Event> events;

private:
    template <class Signal> void record(CMeasurementParameters& parameters, const char* name, Signal signal)
    {
        QObject::connect(&parameters, signal, &context,
                         [this, name](auto value) { events.emplace_back(name, static_cast<double>(value)); });
    }

    QObject context;
};

void assign(CMeasurementParameters& parameters, const std::string& name, double value)
{
    if (name == "AcquisitionRate")
        parameters.SetAcquisitionRate(value);
    else if (name == "ImmediateAcquisitionRate")
        parameters.SetImmediateAcquisitionRate(value);
    else if (name == "BlockSize")
        parameters.SetBlockSize(static_cast<int>(value));
    else if (name == "DisplayRate")
        parameters.SetDisplayRate(value);
    else if (name == "FrequencyMin")
        parameters.SetFrequencyMin(value);
    else if (name == "FrequencyMax")
        parameters.SetFrequencyMax(value);
    else if (name == "NumberOfBins")
        parameters.SetNumberOfBins(value);
    else if (name == "TriggerMode")
        parameters.SetTriggerMode(static_cast<CTrigger::TriggerMode>(static_cast<int>(value)));
    else
        qFatal("unknown parameter %s", name.c_str());
}

double valueOf(const CMeasurementParameters& parameters, const std::string& name)
{
    if (name == "TriggerMode")
        return parameters.TriggerMode();
    return parameters.property(name.c_str()).toDouble();
}

std::string textOf(const std::vector<Event>& events)
{
    std::string text;
    for (const Event& event : events)
        text += event.first + "=" + QString::number(event.second, 'g', 17).toStdString() + " ";
    return text;
}

} // namespace

class tst_CMeasurementParameters : public QObject
{
    Q_OBJECT

private slots:
    void surface()
    {
        const QMetaObject& metaObject = CMeasurementParameters::staticMetaObject;
        VERIFY_NO_DIFFERENCE(
            compareProperties(metaObject, {{"Averaging", "int", ReadWrite},
                                           {"AcquisitionRate", "double", ReadWrite},
                                           {"ImmediateAcquisitionRate", "double", ReadWrite},
                                           {"BlockSize", "int", ReadWrite},
                                           {"DisplayRate", "double", ReadWrite},
                                           {"FrequencyMin", "double", ReadWrite},
                                           {"FrequencyMax", "double", ReadWrite},
                                           {"NumberOfBins", "double", ReadWrite},
                                           {"Units", "CUnits::UnitType", ReadWrite},
                                           {"DisplayUnits", "CUnits::UnitType", ReadWrite},
                                           {"UncertaintyUnitList", "QList<CUnits::UnitType>", ReadWrite},
                                           {"UncertaintyUnits", "CUnits::UnitType", ReadWrite},
                                           {"EnableAdcUnit", "bool", ReadWrite},
                                           {"AutoRange", "bool", ReadWrite},
                                           {"Range", "tFlux", ReadWrite},
                                           {"TriggerMode", "CTrigger::TriggerMode", ReadWrite},
                                           {"TriggerPlugin", "CTriggerPlugin*", ReadWrite},
                                           {"ApplyConfiguration", "bool", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(
            compareMethods(metaObject, QMetaMethod::Slot,
                           {"OnAcquisitionRateChanged()", "OnDisplayRateChanged()", "OnFrequencyMaxChanged()",
                            "OnFrequencyMinChanged()", "OnBlockSizeChanged()", "OnNumberOfBinsChanged()",
                            "OnImmediateAcquisitionRateChanged()", "OnTriggerModeChanged()"}));
    }

    void initialValues()
    {
        const CMeasurementParameters parameters;
        QCOMPARE(parameters.Averaging(), 1);
        QCOMPARE(parameters.AcquisitionRate(), 0.0);
        QCOMPARE(parameters.ImmediateAcquisitionRate(), 0.0);
        QCOMPARE(parameters.BlockSize(), 1);
        QCOMPARE(parameters.DisplayRate(), 1.0);
        QCOMPARE(parameters.FrequencyMin(), 0.0);
        QCOMPARE(parameters.FrequencyMax(), 0.0);
        QCOMPARE(parameters.NumberOfBins(), 0.0);
        QCOMPARE(parameters.Units(), CUnits::UNKNOWN);
        QCOMPARE(parameters.DisplayUnits(), CUnits::UNKNOWN);
        QVERIFY(parameters.UncertaintyUnitList().isEmpty());
        QCOMPARE(parameters.UncertaintyUnits(), CUnits::UNKNOWN);
        QVERIFY(!parameters.EnableAdcUnit());
        QVERIFY(!parameters.AutoRange());
        QCOMPARE(parameters.Range(), 0.0F);
        QCOMPARE(parameters.TriggerMode(), CTrigger::IMMEDIATE);
        QCOMPARE(parameters.TriggerPlugin(), nullptr);
        QVERIFY(parameters.ApplyConfiguration());
        QCOMPARE(
            parameters.ToString(QStringLiteral(" ")),
            QStringLiteral("Units=  Range=0 AutoRange=0 TriggerMode=Immediate AcqRate=0 DispRate=1 Avg=1 "
                           "FreqMin=0 FreqMax=0 Bins=0 BlockSize=1"));
    }

    void textForm()
    {
        CMeasurementParameters parameters;
        parameters.SetUnits(CUnits::NANO_TESLA);
        parameters.SetDisplayUnits(CUnits::GAUSS);
        parameters.SetRange(0.1F);
        parameters.SetAutoRange(true);
        parameters.SetTriggerMode(static_cast<CTrigger::TriggerMode>(9));
        parameters.SetAveraging(7);
        QVERIFY(parameters.ToString(QStringLiteral(";"))
                    .startsWith(QStringLiteral("Units=nT;Range=0.1;AutoRange=1;TriggerMode=;AcqRate=0;")));
        parameters.SetTriggerMode(CTrigger::CONTINUOUS);
        parameters.SetDisplayRate(3.0);
        parameters.SetAcquisitionRate(1234567.0);
        QVERIFY(parameters.ToString(QStringLiteral("|"))
                    .contains(QStringLiteral("|AcqRate=1.23457e+06|DispRate=3|Avg=7|")));
    }

    void fourSettersEmitAlways()
    {
        CMeasurementParameters parameters;
        QSignalSpy units(&parameters, &CMeasurementParameters::UnitsChanged);
        QSignalSpy displayUnits(&parameters, &CMeasurementParameters::DisplayUnitsChanged);
        QSignalSpy uncertaintyUnits(&parameters, &CMeasurementParameters::UncertaintyUnitsChanged);
        QSignalSpy list(&parameters, &CMeasurementParameters::UncertaintyUnitListChanged);
        QSignalSpy averaging(&parameters, &CMeasurementParameters::AveragingChanged);
        QSignalSpy range(&parameters, &CMeasurementParameters::RangeChanged);
        for (int i = 0; i < 2; ++i) {
            parameters.SetUnits(CUnits::UNKNOWN);
            parameters.SetDisplayUnits(CUnits::UNKNOWN);
            parameters.SetUncertaintyUnits(CUnits::UNKNOWN);
            parameters.SetUncertaintyUnitList({});
            parameters.SetAveraging(1);
            parameters.SetRange(0);
        }
        QCOMPARE(units.count(), 2);
        QCOMPARE(displayUnits.count(), 2);
        QCOMPARE(uncertaintyUnits.count(), 2);
        QCOMPARE(list.count(), 2);
        QCOMPARE(averaging.count(), 0);
        QCOMPARE(range.count(), 0);
    }

    void frequencyResolution()
    {
        CMeasurementParameters parameters;
        parameters.SetTriggerMode(CTrigger::CONTINUOUS);
        parameters.SetDisplayRate(2);
        parameters.SetAcquisitionRate(200);
        QCOMPARE(parameters.FrequencyResolution(), 2.0);
        parameters.SetBlockSize(0);
        QCOMPARE(parameters.FrequencyResolution(), 0.0);
    }

    void examplesByHand()
    {
        {
            CMeasurementParameters parameters;
            parameters.SetTriggerMode(CTrigger::CONTINUOUS);
            parameters.SetDisplayRate(2);
            QSignalSpy apply(&parameters, &CMeasurementParameters::ApplyConfigurationChanged);
            parameters.SetAcquisitionRate(200);
            QCOMPARE(parameters.FrequencyMax(), 100.0);
            QCOMPARE(parameters.BlockSize(), 100);
            QCOMPARE(parameters.NumberOfBins(), 50.0);
            QCOMPARE(apply.count(), 2);
            QCOMPARE(apply.at(0).at(0).toBool(), false);
            QCOMPARE(apply.at(1).at(0).toBool(), true);

            parameters.SetFrequencyMax(500);
            QCOMPARE(parameters.AcquisitionRate(), 1000.0);
            QCOMPARE(parameters.FrequencyMax(), 500.0);

            const int blockSize = parameters.BlockSize();
            parameters.SetAcquisitionRate(1);
            QCOMPARE(parameters.BlockSize(), blockSize);
        }
        {
            CMeasurementParameters parameters;
            parameters.SetTriggerMode(CTrigger::TIMER);
            parameters.SetDisplayRate(2);
            parameters.SetAcquisitionRate(200);
            QCOMPARE(parameters.BlockSize(), 100);
            QCOMPARE(parameters.DisplayRate(), 2.0);
            parameters.SetBlockSize(50);
            QCOMPARE(parameters.DisplayRate(), 4.0);
            QCOMPARE(parameters.AcquisitionRate(), 200.0);
        }
        for (const CTrigger::TriggerMode mode : {CTrigger::IMMEDIATE, CTrigger::EXTERNAL}) {
            CMeasurementParameters parameters;
            parameters.SetTriggerMode(mode);
            parameters.SetBlockSize(10);
            parameters.SetAcquisitionRate(200);
            QCOMPARE(parameters.DisplayRate(), 20.0);
        }
        {
            CMeasurementParameters parameters;
            parameters.SetTriggerMode(CTrigger::CONTINUOUS);
            const QString before = parameters.ToString(QStringLiteral(" "));
            QSignalSpy apply(&parameters, &CMeasurementParameters::ApplyConfigurationChanged);
            parameters.SetImmediateAcquisitionRate(77);
            QCOMPARE(parameters.ToString(QStringLiteral(" ")), before);
            QCOMPARE(apply.count(), 0);
            // The mode alone takes the rate up, even one of 0.
            parameters.SetTriggerMode(CTrigger::IMMEDIATE);
            QCOMPARE(parameters.FrequencyMax(), 38.5);
        }
    }

    void blockSizeWrapsInSixteenBits()
    {
        CMeasurementParameters parameters;
        parameters.SetTriggerMode(CTrigger::CONTINUOUS);
        parameters.SetDisplayRate(1);
        parameters.SetAcquisitionRate(65536.0);
        QCOMPARE(parameters.BlockSize(), 0);
        parameters.SetAcquisitionRate(65537.9);
        QCOMPARE(parameters.BlockSize(), 1);
        parameters.SetAcquisitionRate(1e300);
        QVERIFY(parameters.BlockSize() >= 0 && parameters.BlockSize() <= 65535);
        parameters.SetAcquisitionRate(std::numeric_limits<double>::infinity());
        QVERIFY(parameters.BlockSize() >= 0 && parameters.BlockSize() <= 65535);
    }

    void noTrueEdgeWhileAnotherHoldsTheFlagDown()
    {
        CMeasurementParameters parameters;
        parameters.SetApplyConfiguration(false);
        QSignalSpy apply(&parameters, &CMeasurementParameters::ApplyConfigurationChanged);
        parameters.SetTriggerMode(CTrigger::CONTINUOUS);
        parameters.SetAcquisitionRate(20.0);
        parameters.SetDisplayRate(10.0);
        QCOMPARE(apply.count(), 0);
        parameters.SetApplyConfiguration(true);
        QCOMPARE(apply.count(), 1);
        QCOMPARE(parameters.BlockSize(), 2);
        QCOMPARE(parameters.FrequencyMax(), 10.0);
        QCOMPARE(parameters.NumberOfBins(), 1.0);
    }

    void oneAssignmentFromEachModeAndState_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("value");
        const char* const names[] = {"AcquisitionRate",
                                     "BlockSize",
                                     "DisplayRate",
                                     "FrequencyMax",
                                     "FrequencyMin",
                                     "NumberOfBins",
                                     "ImmediateAcquisitionRate"};
        const double values[] = {0, 1, 2, 7, 0.5, 100, 333, 70000};
        for (int mode = 1; mode <= 4; ++mode) {
            for (const char* name : names) {
                for (const double value : values) {
                    if (qstrcmp(name, "BlockSize") == 0 && value != std::floor(value))
                        continue;
                    QTest::addRow("%d %s %g", mode, name, value)
                        << mode << QString::fromLatin1(name) << value;
                }
            }
        }
    }

    void oneAssignmentFromEachModeAndState()
    {
        QFETCH(int, mode);
        QFETCH(QString, name);
        QFETCH(double, value);
        Model model;
        CMeasurementParameters parameters;
        const std::vector<Event> preparation{
            {"TriggerMode", mode}, {"AcquisitionRate", 200}, {"DisplayRate", 2}};
        for (const Event& event : preparation) {
            model.assign(event.first, event.second);
            assign(parameters, event.first, event.second);
        }
        model.events.clear();
        const Recorder recorder(parameters);
        model.assign(name.toStdString(), value);
        assign(parameters, name.toStdString(), value);
        QCOMPARE(textOf(recorder.events), textOf(model.events));
    }

    void thousandsOfRandomSequences()
    {
        std::mt19937 random(20240301);
        const std::vector<std::string> names{
            "AcquisitionRate", "BlockSize",    "DisplayRate", "FrequencyMax",
            "FrequencyMin",    "NumberOfBins", "TriggerMode", "ImmediateAcquisitionRate"};
        const auto pick = [&random](int count) {
            return std::uniform_int_distribution<int>(0, count - 1)(random);
        };
        for (int sequence = 0; sequence < 5000; ++sequence) {
            Model model;
            CMeasurementParameters parameters;
            Recorder recorder(parameters);
            for (int step = 0; step < 12; ++step) {
                const std::string& name =
                    names[static_cast<std::size_t>(pick(static_cast<int>(names.size())))];
                double value = 0;
                if (name == "TriggerMode")
                    value = 1 + pick(4);
                else if (name == "BlockSize")
                    value = pick(4) == 0 ? pick(70000) : pick(200);
                else if (pick(3) == 0)
                    value = pick(50);
                else
                    value = std::exp(std::uniform_real_distribution<double>(-6, 13)(random));
                recorder.events.clear();
                model.events.clear();
                model.assign(name, value);
                assign(parameters, name, value);
                QVERIFY2(recorder.events == model.events,
                         ("after " + name + "=" + std::to_string(value) + "\n is       " +
                          textOf(recorder.events) + "\n expected " + textOf(model.events))
                             .c_str());
                int trueEdges = 0;
                for (const Event& event : recorder.events)
                    trueEdges += event.first == "ApplyConfiguration" && event.second == 1 ? 1 : 0;
                QVERIFY(trueEdges <= 1);
                QVERIFY(parameters.ApplyConfiguration());
            }
            for (const auto& [name, value] : model.values)
                QCOMPARE(valueOf(parameters, name), value);
        }
    }
};

QTEST_GUILESS_MAIN(tst_CMeasurementParameters)
#include "tst_CMeasurementParameters.moc"
