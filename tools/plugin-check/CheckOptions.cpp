// SPDX-License-Identifier: GPL-3.0-or-later
#include "CheckOptions.h"

#include <QCommandLineParser>

#include <cmath>

namespace {

QCommandLineOption option(const char* name, const char* description, const char* valueName = "",
                          const char* defaultValue = "")
{
    return QCommandLineOption(QLatin1String(name), QLatin1String(description), QLatin1String(valueName),
                              QLatin1String(defaultValue));
}

QCommandLineOption hiddenOption(const char* name, const char* valueName)
{
    QCommandLineOption hidden = option(name, "", valueName);
    hidden.setFlags(QCommandLineOption::HiddenFromHelp);
    return hidden;
}

/// Collects the first complaint about a number.
class NumberReader
{
public:
    explicit NumberReader(const QCommandLineParser& parser) : m_parser(parser) {}

    double Read(const char* name, double min, double max)
    {
        const QString text = m_parser.value(QLatin1String(name));
        bool isNumber = false;
        const double value = text.toDouble(&isNumber);
        if (isNumber && std::isfinite(value) && value >= min && value <= max)
            return value;
        if (m_error.isEmpty())
            m_error = QStringLiteral("--%1: \"%2\" is not a number from %3 to %4")
                          .arg(QLatin1String(name), text)
                          .arg(min)
                          .arg(max);
        return min;
    }
    int ReadMs(const char* name, double maxMs, double factor)
    {
        return static_cast<int>(std::lround(Read(name, 0.001, maxMs / factor) * factor));
    }
    QString Error() const { return m_error; }

private:
    const QCommandLineParser& m_parser;
    QString m_error;
};

} // namespace

CheckOptions::Outcome CheckOptions::Parse(const QStringList& arguments, QString& text)
{
    constexpr double kDayMs = 86400000;
    constexpr double kMsPerS = 1000;

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Loads a Kestrix plug-in outside of the application and reports where it breaks the "
                       "contract.\nExit codes: 0 none found, 1 violations, 2 wrong command line, 3 the "
                       "plug-in crashed, 4 it hung."));
    parser.addOptions(
        {option("help", "Shows this text."), option("version", "Shows the version."),
         option("codes", "Lists all codes of findings with their meaning."),
         option("kind", "instrument, mapper or trigger; otherwise what the library exports.", "kind"),
         option("json", "Writes the report as JSON."), option("strict", "Warnings count as violations."),
         option("verbose", "Shows the plug-in's own output and how long its calls took."),
         option("time-limit", "Of the whole check.", "seconds", "120"),
         option("call-limit", "A call that takes longer hangs.", "seconds", "30"),
         option("slow", "A longer call blocks the user interface.", "milliseconds", "200"),
         option("slow-connect", "The same for Connect, Disconnect and the calibration.", "milliseconds",
                "10000"),
         option("wait", "How long to wait for what must come.", "seconds", "5"),
         option("blocks", "Blocks to take in each trigger mode.", "count", "4"),
         option("instrument", "Checks only the instrument with this serial number.", "serial number"),
         option("serial-port", "Name of the port given to the list provider.", "name"),
         option("baud-rate", "Speed of that port.", "baud", "9600"),
         option("calibrate", "Calibrates the zero offset and restores it to factory, too."),
         option("step", "How far a stop-and-go mapper is moved, in its own unit.", "length", "1"),
         hiddenOption("journal", "file")});
    parser.addPositionalArgument(QStringLiteral("plugin"), QStringLiteral("The library to check."));

    if (!parser.parse(arguments)) {
        text = parser.errorText();
        return Outcome::Fail;
    }
    const auto isSet = [&parser](const char* name) { return parser.isSet(QLatin1String(name)); };
    if (isSet("help")) {
        text = parser.helpText();
        return Outcome::Exit;
    }
    if (isSet("version")) {
        text = QStringLiteral("kestrix-plugin-check " KESTRIX_VERSION ", contract " KESTRIX_CONTRACT_VERSION
                              ", Qt %1\n")
                   .arg(QLatin1String(qVersion()));
        return Outcome::Exit;
    }
    isListingCodes = isSet("codes");
    if (isListingCodes)
        return Outcome::Check;

    NumberReader numbers(parser);
    timeLimitMs = numbers.ReadMs("time-limit", kDayMs, kMsPerS);
    callLimitMs = numbers.ReadMs("call-limit", kDayMs, kMsPerS);
    slowMs = numbers.ReadMs("slow", kDayMs, 1);
    slowConnectMs = numbers.ReadMs("slow-connect", kDayMs, 1);
    waitMs = numbers.ReadMs("wait", kDayMs, kMsPerS);
    numBlocks = static_cast<int>(numbers.Read("blocks", 2, 1e6));
    baudRate = static_cast<int>(numbers.Read("baud-rate", 0, 1e9));
    step = numbers.Read("step", -1e6, 1e6);
    text = numbers.Error();

    kind = parser.value(QStringLiteral("kind"));
    if (!kind.isEmpty() && kind != QLatin1String("instrument") && kind != QLatin1String("mapper") &&
        kind != QLatin1String("trigger"))
        text = QStringLiteral("--kind: \"%1\" is none of instrument, mapper, trigger").arg(kind);
    isJson = isSet("json");
    isStrict = isSet("strict");
    isVerbose = isSet("verbose");
    isCalibrating = isSet("calibrate");
    serialNumber = parser.value(QStringLiteral("instrument"));
    serialPort = parser.value(QStringLiteral("serial-port"));
    journalPath = parser.value(QStringLiteral("journal"));
    const QStringList plugins = parser.positionalArguments();
    if (plugins.size() == 1)
        pluginPath = plugins.constFirst();
    else if (text.isEmpty())
        text = QStringLiteral("One plug-in library is to be named.");
    return text.isEmpty() ? Outcome::Check : Outcome::Fail;
}
