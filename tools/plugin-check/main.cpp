// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCheckProcess.h"
#include "CCheckRun.h"
#include "CheckOptions.h"
#include "FindingCatalog.h"

#include <QApplication>
#include <QFileInfo>
#include <QTextStream>

#include <cstring>
#include <memory>

namespace {

constexpr int kExitUsage = 2;

int fail(const QString& text)
{
    QTextStream(stderr) << "kestrix-plugin-check: " << text << '\n';
    return kExitUsage;
}

void print(const QString& text)
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << text;
}

bool isChecker(int argc, char** argv)
{
    return argc > 1 && std::strcmp(argv[1], "--journal") == 0;
}

/// A plug-in may expect what the application has, its windows included.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv)
{
    if (!isChecker(argc, argv))
        return std::make_unique<QCoreApplication>(argc, argv);
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") &&
        !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestrix-plugin-check"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIX_VERSION));

    CheckOptions options;
    QString text;
    switch (options.Parse(QCoreApplication::arguments(), text)) {
    case CheckOptions::Outcome::Exit:
        print(text);
        return 0;
    case CheckOptions::Outcome::Fail:
        return fail(text);
    case CheckOptions::Outcome::Check:
        break;
    }
    if (options.isListingCodes) {
        print(FindingCatalog::listing());
        return 0;
    }
    if (!QFileInfo(options.pluginPath).isFile())
        return fail(QStringLiteral("%1: no such file").arg(options.pluginPath));
    if (isChecker(argc, argv)) {
        CCheckRun run(options);
        return run.Execute() ? 0 : fail(QStringLiteral("The journal cannot be written"));
    }

    CCheckProcess process(options, QCoreApplication::arguments().mid(1));
    if (!process.Run(text))
        return fail(text);
    print(options.isJson ? QString::fromUtf8(process.Report().Json()) : process.Report().Text());
    return process.Report().ExitCode();
}
