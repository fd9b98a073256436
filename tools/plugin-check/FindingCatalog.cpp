// SPDX-License-Identifier: GPL-3.0-or-later
#include "FindingCatalog.h"

#include <QLatin1String>

#include <algorithm>
#include <iterator>

namespace {

struct Entry
{
    const char* code;
    bool isError;
    const char* meaning;
};

constexpr bool kError = true;
constexpr bool kWarning = false;

const Entry kEntries[] = {
    // Loading
    {"load-failed", kError, "The library cannot be loaded."},
    {"contract-version", kError, "The library was built for another version of the contract."},
    {"unresolved-symbol", kError,
     "A symbol is missing that the first call to it would end the application with."},
    {"factory-missing", kError,
     "No factory function is exported: it needs C linkage, default visibility and its exact name."},
    {"several-factories", kWarning, "The library exports the factories of several kinds."},
    {"factory-null", kWarning,
     "The factory returned null; the application passes over it without a message."},
    {"wrong-class", kError, "The factory's object does not derive from the class of the contract."},
    {"object-thread", kError,
     "The object lives in another thread than the main thread, from which it is called."},
    // Any call
    {"exception", kError, "An exception left a call; only Connect and Disconnect are guarded against them."},
    {"slow-call", kError, "A call blocks the main thread, and with it the user interface."},
    {"main-thread-blocked", kError, "The plug-in's own events block the main thread."},
    {"crash", kError, "The plug-in ended the process."},
    {"hang", kError, "A call or a wait did not come to its end."},
    {"exit-status", kError, "The process ended with an error after the last call."},
    {"thread-left", kWarning, "Threads are left over after the plug-in was deleted."},
    {"signal-missing", kError, "A signal that the contract demands did not come."},
    {"signal-after-stop", kError, "A signal was emitted after Stop() had returned."},
    {"stop-not-idempotent", kError, "A second Stop() had an effect of its own."},
    {"restart-failed", kError, "After Stop() and Start() the plug-in no longer does what it did."},
    {"name-empty", kError, "Name is empty: lists and parameter files know the plug-in by it."},
    // Instruments: list
    {"provider-null", kError, "GetInstrumentListProvider() returned null."},
    {"list-not-announced", kError,
     "InstrumentListUpdated did not come after the event loop ran; inside Start() it is lost."},
    {"list-empty", kWarning, "No instrument is reachable, so none was checked."},
    {"list-null", kError, "The list holds a null pointer."},
    {"list-identity", kError,
     "GetInstrumentList() made new objects: the active instrument is dropped at each refresh."},
    {"serial-empty", kError, "SerialNumber is empty: it is the identity of the instrument."},
    {"serial-duplicate", kError, "Two instruments have the same SerialNumber."},
    {"instrument-missing", kError, "The instrument asked for is not in the list."},
    {"enum-value", kError, "A value is none of its enumeration."},
    {"state", kError, "IsConnected or IsRunning does not tell the truth."},
    // Instruments: connection
    {"connect-failed", kWarning, "Connect() failed, so the instrument was not checked further."},
    {"reconnect-failed", kError, "Connect() failed on an instrument that had been connected before."},
    {"disconnect-threw", kWarning, "Disconnect() threw; the application logs it and goes on."},
    {"identity-empty", kWarning, "A text of the instrument's identity is empty after Connect()."},
    {"units-empty", kError, "UnitList is empty: nothing can be measured in."},
    {"unit-invalid", kError, "UnitList holds what is no field unit."},
    {"unit-order", kError,
     "ADC is not the last of UnitList: without it the others would change their places."},
    {"ranges-empty", kWarning, "RangeList is empty: only automatic ranging can be chosen."},
    {"range-invalid", kError, "A range is not a finite positive number of tesla."},
    {"range-order", kWarning,
     "RangeList is not in ascending order; a range that is not listed becomes the last."},
    {"triggers-empty", kError, "TriggerList is empty: no trigger mode can be chosen."},
    {"trigger-order", kError,
     "CONTINUOUS is not the first of TriggerList, on which the mapping page relies."},
    {"trigger-position", kWarning,
     "TriggerList leaves out a mode before one that it has, so that the mapping page chooses another one."},
    {"list-duplicate", kError, "A list holds a value twice."},
    {"bound-inverted", kError, "Min of a bound is above its Max."},
    {"bound-default", kError, "Default of a bound lies outside of it."},
    {"bound-invalid", kError, "A bound is not finite, was never set or allows what makes no sense."},
    {"bound-frequency", kWarning, "FrequencyMaxBound is below half of the highest acquisition rate."},
    {"bound-averaging", kWarning,
     "AveragingBound leaves out 10 or 100, with which pages begin: nobody can measure there before he has "
     "changed it."},
    {"property-silent", kError, "A property changed without its signal."},
    // Instruments: measurement
    {"not-running", kError, "IsRunning is not true after StartMeasurement()."},
    {"still-running", kError, "IsRunning is not false after the measurement was ended."},
    {"no-block", kError, "No block came."},
    {"external-no-block", kWarning,
     "No block came in EXTERNAL mode, neither by Trigger() nor by SendTrigger()."},
    {"block-null", kError, "A null pointer was emitted as a block."},
    {"sample-null", kError, "A block holds a null sample."},
    {"block-size", kError, "A block does not have BlockSize samples."},
    {"block-changed", kError, "A block or sample was changed or emitted again after its emit."},
    {"block-after-stop", kError, "A block was emitted after the measurement had been ended."},
    {"timestamp-invalid", kError, "A sample has no valid Timestamp."},
    {"nanoseconds-range", kError, "TimestampNanoseconds is above 999999999."},
    {"timestamp-backwards", kError, "A sample is older than the one before it."},
    {"timestamp-equal", kWarning, "Two samples have the same time."},
    {"timestamp-fraction", kWarning, "The milliseconds of Timestamp are not those of TimestampNanoseconds."},
    {"sample-period", kWarning, "The samples are not spaced by the period of the acquisition rate."},
    {"uncertainty-negative", kWarning, "dB is negative."},
    {"converted-set", kWarning, "dBConverted was set; it belongs to the application."},
    {"immediate-rate", kError, "ImmediateAcquisitionRate was not written, though IMMEDIATE is offered."},
    {"apply-early", kError, "Parameters were applied while ApplyConfiguration was false."},
    {"apply-missed", kError, "Parameters were not applied when ApplyConfiguration became true."},
    {"unit-ignored", kError, "Blocks are not in the unit that Units asks for."},
    {"unit-stale", kWarning, "Blocks in the former unit came after Units had changed."},
    {"list-update-missing", kError, "A capability list changed without its OnUnitListUpdated or the like."},
    // Mappers and triggers
    {"mapper-type", kError, "MapperType does not tell the truth about the class."},
    {"position-invalid", kError, "A position or orientation is not a finite number."},
    {"position-off", kWarning, "After Ready the mapper is not where it was sent to."},
    {"ready-twice", kError, "Ready() came more than once for one MoveTo()."},
    {"ready-unasked", kError, "Ready() came without a MoveTo()."},
    {"signal-not-seen", kWarning, "Nothing was emitted; it may need the device to be moved or triggered."},
    {"shutdown-final", kError,
     "After Shutdown() the plug-in no longer starts, though the exit may be refused."},
};

const Entry* find(const QString& code)
{
    const auto* const found =
        std::find_if(std::begin(kEntries), std::end(kEntries),
                     [&code](const Entry& entry) { return code == QLatin1String(entry.code); });
    return found == std::end(kEntries) ? nullptr : found;
}

} // namespace

bool FindingCatalog::isError(const QString& code)
{
    const Entry* entry = find(code);
    return !entry || entry->isError;
}

QString FindingCatalog::meaningOf(const QString& code)
{
    const Entry* entry = find(code);
    return entry ? QString::fromLatin1(entry->meaning) : QString();
}

QString FindingCatalog::listing()
{
    QString text;
    for (const Entry& entry : kEntries)
        text += QStringLiteral("%1 %2 %3\n")
                    .arg(QLatin1String(entry.isError ? "error" : "warning"), -8)
                    .arg(QLatin1String(entry.code), -22)
                    .arg(QLatin1String(entry.meaning));
    return text;
}
