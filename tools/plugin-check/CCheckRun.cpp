// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCheckRun.h"

#include "CInstrumentPluginCheck.h"
#include "CMapperCheck.h"
#include "CPluginLibrary.h"
#include "CTriggerCheck.h"
#include "ProductInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QJsonObject>
#include <QThread>
#include <QTimer>

#include <cstdlib>

namespace {

constexpr int kPollMs = 5;
constexpr int kThreadGraceMs = 500;
constexpr double kMsPerNs = 1e-6;

double elapsedMs(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) * kMsPerNs;
}

/// Threads of this process; -1 where that cannot be known.
int threadCount()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    return tasks.exists() ? static_cast<int>(tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size()) : -1;
}

} // namespace

CCheckRun::CCheckRun(const CheckOptions& options) : m_options(options), m_journal(options.journalPath) {}

bool CCheckRun::Execute()
{
    if (!m_journal.OpenForWriting())
        return false;
    // Plug-ins find their files by these names.
    QCoreApplication::setOrganizationName(kOrganizationName);
    QCoreApplication::setOrganizationDomain(kOrganizationDomain);
    QCoreApplication::setApplicationName(kApplicationName);
    checkLibrary();
    m_journal.Write("end");
    return true;
}

void CCheckRun::checkLibrary()
{
    Phase(QStringLiteral("load"));
    const int numThreads = threadCount();
    CPluginLibrary library(m_options.pluginPath);
    QString error;
    m_journal.Write("begin", {{QStringLiteral("name"), QStringLiteral("loading the library")}});
    const bool isLoaded = library.Load(error);
    const QString version = library.ContractVersion();
    if (!version.isEmpty() && version != QLatin1String(KESTRIX_CONTRACT_VERSION))
        Find("contract-version",
             QStringLiteral("built for version %1, this is version " KESTRIX_CONTRACT_VERSION).arg(version));
    if (!isLoaded) {
        Find("load-failed", error);
        return;
    }
    if (!error.isEmpty())
        Find("unresolved-symbol", error);

    QStringList kinds = library.Kinds();
    if (kinds.size() > 1 && m_options.kind.isEmpty())
        Find("several-factories", kinds.join(QLatin1String(", ")));
    if (!m_options.kind.isEmpty())
        kinds = kinds.contains(m_options.kind) ? QStringList{m_options.kind} : QStringList();
    if (kinds.isEmpty())
        Find("factory-missing", m_options.kind.isEmpty()
                                    ? QStringLiteral("none of CreateInstrumentPlugin, CreateMapperPlugin, "
                                                     "CreateTriggerPlugin")
                                    : QString::fromLatin1(CPluginLibrary::FactoryNameOf(m_options.kind)));
    for (const QString& kind : qAsConst(kinds)) {
        m_journal.Write("kind", {{QStringLiteral("name"), kind}});
        if (kind == QLatin1String("instrument"))
            CInstrumentPluginCheck(*this).Execute(library);
        else if (kind == QLatin1String("mapper"))
            CMapperCheck(*this).Execute(library);
        else
            CTriggerCheck(*this).Execute(library);
    }
    Phase(QStringLiteral("after the end"));
    checkThreads(numThreads);
}

void CCheckRun::checkThreads(int numBefore)
{
    if (numBefore < 0)
        return;
    Wait("threads end", kThreadGraceMs, [numBefore] { return threadCount() <= numBefore; });
    const int numLeft = threadCount() - numBefore;
    if (numLeft > 0)
        Find("thread-left", QStringLiteral("%1 more than before the library was loaded").arg(numLeft));
}

void CCheckRun::Phase(const QString& name)
{
    m_phase = name;
    m_found.clear();
    m_journal.Write("phase", {{QStringLiteral("name"), name}});
}

void CCheckRun::Find(const char* code, const QString& detail)
{
    const QString codeText = QString::fromLatin1(code);
    if (m_found.contains(codeText))
        return;
    m_found.insert(codeText);
    m_journal.Write("finding", {{QStringLiteral("code"), codeText}, {QStringLiteral("detail"), detail}});
}

void CCheckRun::Fact(const QString& name, const QJsonValue& value)
{
    m_journal.Write("fact", {{QStringLiteral("name"), name}, {QStringLiteral("value"), value}});
}

bool CCheckRun::measured(const char* name, CallKind kind, QString& error,
                         const std::function<void()>& function)
{
    const QString nameText = QString::fromLatin1(name);
    m_journal.Write("begin", {{QStringLiteral("name"), nameText}});
    QElapsedTimer timer;
    timer.start();
    bool hasThrown = false;
    try {
        function();
    } catch (const std::exception& exception) {
        hasThrown = true;
        error = QString::fromLocal8Bit(exception.what());
    } catch (...) {
        hasThrown = true;
        error = QStringLiteral("not derived from std::exception");
    }
    const double ms = elapsedMs(timer);
    m_journal.Write("return", {{QStringLiteral("name"), nameText}, {QStringLiteral("ms"), ms}});
    const int limitMs = kind == CallKind::Instant ? m_options.slowMs : m_options.slowConnectMs;
    if (ms > limitMs)
        Find("slow-call",
             QStringLiteral("%1 took %2 ms, more than %3").arg(nameText).arg(ms, 0, 'f', 0).arg(limitMs));
    return !hasThrown;
}

void CCheckRun::endAfterException(const char* name, const QString& error)
{
    Find("exception", QStringLiteral("%1 threw: %2").arg(QLatin1String(name), error));
    m_journal.Write("end");
    // The application would have ended here, and the plug-in is in no state to be asked for anything else.
    std::_Exit(0);
}

bool CCheckRun::Wait(const char* what, int ms, const std::function<bool()>& isSo)
{
    const QString whatText = QStringLiteral("waiting: ") + QLatin1String(what);
    m_journal.Write("begin", {{QStringLiteral("name"), whatText}, {QStringLiteral("limitMs"), ms}});
    QElapsedTimer elapsed;
    elapsed.start();
    QElapsedTimer sinceTick;
    sinceTick.start();
    double longestMs = 0;
    bool hasComeTrue = false;
    QEventLoop loop;
    QTimer poll;
    poll.setTimerType(Qt::PreciseTimer);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        longestMs = qMax(longestMs, elapsedMs(sinceTick) - kPollMs);
        sinceTick.start();
        hasComeTrue = isSo();
        if (hasComeTrue || elapsed.elapsed() >= ms)
            loop.quit();
    });
    poll.start(kPollMs);
    loop.exec();
    m_journal.Write("return",
                    {{QStringLiteral("name"), whatText}, {QStringLiteral("ms"), elapsedMs(elapsed)}});
    if (longestMs > m_options.slowMs)
        Find("main-thread-blocked", QStringLiteral("for %1 ms, more than %2, while %3")
                                        .arg(longestMs, 0, 'f', 0)
                                        .arg(m_options.slowMs)
                                        .arg(whatText));
    return hasComeTrue;
}

void CCheckRun::Rest(const char* what, int ms)
{
    Wait(what, ms, [] { return false; });
}

bool CCheckRun::CheckObject(const QObject& object, const QMetaObject& expected, const char* name)
{
    if (!object.metaObject()->inherits(&expected)) {
        Find("wrong-class", QStringLiteral("%1 is a %2, which does not derive from this program's %3")
                                .arg(QLatin1String(name), QLatin1String(object.metaObject()->className()),
                                     QLatin1String(expected.className())));
        return false;
    }
    if (object.thread() != QThread::currentThread())
        Find("object-thread", QLatin1String(name));
    return true;
}

void CCheckRun::Delete(QObject* plugin)
{
    Call("deletion of the plug-in", [plugin] {
        plugin->deleteLater();
        QCoreApplication::sendPostedEvents(plugin, QEvent::DeferredDelete);
    });
}
