#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// What can go wrong at one request of an update.
enum class StepFault
{
    Unplug,
    Stall,
    Silence,
    ShortAnswer,
    DfuError,
    Busy,
};

/// Where in an update a request stands, in the order of the first occurrence.
enum class Role
{
    ReadSchema,
    ReadConfiguration,
    ReadVersion,
    ReadRevision,
    Drop,
    ReadLanguages,
    ReadLayout,
    ReadDescriptor,
    SetUpStatus,
    SetAlternate,
    FirstStatus,
    Erase,
    EraseStarts,
    EraseEnds,
    SetAddress,
    AddressStarts,
    AddressEnds,
    AddressSettled,
    Write,
    WriteStarts,
    WriteEnds,
    FinalAddress,
    FinalAddressStarts,
    FinalAddressEnds,
    Finish,
    Manifest,
    ReadAgain, ///< of the restarted unit
};

/// One request of an update that meets no fault.
struct Step
{
    QString name; ///< as the virtual unit's trace has it
    Role role = Role::Drop;
    int chunksWritten = 0; ///< chunks that are wholly written before it
    bool isIn = false;     ///< the unit sends data
    bool isDfu = false;    ///< a request of the DFU class
    int guiTimeoutMs = 0;  ///< how long it may keep the GUI thread waiting, 0: another thread waits
};

/// What a person is left with.
enum class Terminal
{
    List,       ///< the card offers no update
    Succeeded,  ///< "Update successful!"
    Failed,     ///< an error text, "Done" enabled
    Restarting, ///< "Restarting device…" for as long as nothing arrives
};

struct Outcome
{
    Terminal terminal = Terminal::Succeeded;
    QStringList errors; ///< texts of the task's error signals
    QString text;       ///< on the progress bar; in the list the serial name on the card
    int progressReports = 0;
};

/// The requests of an update of three chunks, from the first read of the application unit to the
/// last read of the restarted one. @p statusTimeoutMs is that of a status read.
QVector<Step> updateSteps(int statusTimeoutMs);

/// Why the fault cannot happen at that request; empty when it can.
QString noFaultBecause(const Step& step, StepFault fault);

/// What the update must come to when that fault hits that request.
Outcome expectedOutcome(const Step& step, StepFault fault);
