#include "UpdateSteps.h"

namespace {

constexpr int chunks = 3;

const QString wrappedError = QStringLiteral(
    "Caught USB exception: Error state while downloading to Aquen/Solvar in \"DFU\" mode.");

QVector<Step> setUpSteps(int statusTimeoutMs)
{
    return {
        {"schema", Role::ReadSchema, 0, true, false, 1000},
        {"config", Role::ReadConfiguration, 0, true, false, 5000},
        {"version", Role::ReadVersion, 0, true, false, 1000},
        {"revision", Role::ReadRevision, 0, true, false, 1000},
        {"drop", Role::Drop, 0, false, false, 1000},
        {"string", Role::ReadLanguages, 0, true, false, 1000},
        {"string", Role::ReadLayout, 0, true, false, 1000},
        {"descriptor", Role::ReadDescriptor, 0, true, false, 1000},
        {"getstatus", Role::SetUpStatus, 0, true, true, statusTimeoutMs},
        // The kernel's own request: it has no time-out of the program's.
        {"standard", Role::SetAlternate, 0, false, false, 0},
        {"getstatus", Role::FirstStatus, 0, true, true, 0},
    };
}

QVector<Step> chunkSteps(int written)
{
    QVector<Step> steps = {
        {"erase", Role::Erase, 0, false, true, 0},
        {"getstatus", Role::EraseStarts, 0, true, true, 0},
        {"getstatus", Role::EraseEnds, 0, true, true, 0},
        {"set-address", Role::SetAddress, 0, false, true, 0},
        {"getstatus", Role::AddressStarts, 0, true, true, 0},
        {"getstatus", Role::AddressEnds, 0, true, true, 0},
        {"getstatus", Role::AddressSettled, 0, true, true, 0},
        {"write", Role::Write, 0, false, true, 0},
        {"getstatus", Role::WriteStarts, 0, true, true, 0},
        {"getstatus", Role::WriteEnds, 0, true, true, 0},
    };
    for (Step& step : steps)
        step.chunksWritten = written;
    return steps;
}

QVector<Step> finalSteps()
{
    QVector<Step> steps = {
        {"set-address", Role::FinalAddress, chunks, false, true, 0},
        {"getstatus", Role::FinalAddressStarts, chunks, true, true, 0},
        {"getstatus", Role::FinalAddressEnds, chunks, true, true, 0},
        {"finish", Role::Finish, chunks, false, true, 0},
        {"getstatus", Role::Manifest, chunks, true, true, 0},
    };
    for (const char* name : {"schema", "config", "version", "revision"})
        steps.append({name, Role::ReadAgain, chunks, true, false, name[0] == 'c' ? 5000 : 1000});
    return steps;
}

Outcome success()
{
    return {Terminal::Succeeded, {}, "Update successful!", chunks};
}

Outcome failure(const Step& step, const QString& text)
{
    return {Terminal::Failed, {text}, text, step.chunksWritten};
}

// The two exits that tell of one failure twice.
Outcome badState(const Step& step, const QString& text)
{
    return {Terminal::Failed, {text, wrappedError}, text, step.chunksWritten};
}

// The text that a failed step of the download gives, however it failed.
QString downloadText(Role role)
{
    switch (role) {
    case Role::FirstStatus:
    case Role::WriteStarts:
    case Role::WriteEnds:
    case Role::Manifest:
        return "Failed to read device status.";
    case Role::Erase:
    case Role::EraseStarts:
    case Role::EraseEnds:
        return "Failed to erase flash.";
    case Role::SetAddress:
    case Role::AddressStarts:
    case Role::AddressEnds:
        return "Failed to upload firmware.";
    case Role::AddressSettled:
        return "Failed to flash device sector.";
    case Role::Write:
        return "Failed to upload firmware data.";
    default:
        return "Failed to finalize firmware flashing.";
    }
}

// The request has no answer: refused, lost, or the unit is gone.
Outcome withoutAnswer(const Step& step, bool unplugged)
{
    switch (step.role) {
    case Role::ReadSchema:
        return {Terminal::List, {}, "", 0};
    case Role::ReadConfiguration:
        return {Terminal::List, {}, "Unknown Device", 0};
    case Role::ReadVersion:
        return {Terminal::List, {}, "W-2", 0};
    case Role::ReadRevision: // nothing depends on it
        return unplugged ? Outcome{Terminal::List, {}, "W-2", 0} : success();
    case Role::Drop:
        return {Terminal::Failed, {}, "Error while dropping to boot loader.", 0};
    case Role::SetUpStatus: // only told to the log; the download asks again
        if (!unplugged)
            return success();
        [[fallthrough]];
    case Role::ReadLanguages:
    case Role::ReadLayout:
    case Role::ReadDescriptor:
    case Role::SetAlternate:
        return {Terminal::Failed, {}, "Error while starting to upload the firmware.", 0};
    case Role::ReadAgain: // it has arrived
        return success();
    default:
        return failure(step, downloadText(step.role));
    }
}

// Of each answer one byte arrives, and the rest counts as zeros: a status read tells OK, and a
// state that no bootloader is in.
Outcome withShortAnswer(const Step& step)
{
    switch (step.role) {
    case Role::ReadLanguages:
    case Role::ReadLayout:
        return withoutAnswer(step, false);
    case Role::ReadDescriptor: // a transfer size of 0
        return failure(step, "Failed to upload firmware data.");
    case Role::EraseStarts: // the next command meets a busy unit, which refuses it
        return failure(step, downloadText(Role::SetAddress));
    case Role::FinalAddressStarts:
        return failure(step, downloadText(Role::Finish));
    case Role::WriteStarts:
    case Role::WriteEnds:
        return badState(step, "Error state while flashing firmware.");
    case Role::Manifest: // asked again, the unit has gone
        return failure(step, downloadText(step.role));
    default:
        return success();
    }
}

Outcome withDfuError(const Step& step)
{
    switch (step.role) {
    case Role::SetUpStatus:
    case Role::FirstStatus: // cleared
        return success();
    case Role::AddressSettled:
        return badState(step, "Error while flashing firmware.");
    case Role::Write:
    case Role::WriteStarts:
    case Role::WriteEnds:
        return badState(step, "Error state while flashing firmware.");
    case Role::Finish:
    case Role::Manifest: // counts as the end of the download, but the unit does not restart
        return {Terminal::Restarting, {}, QStringLiteral("Restarting device…"), chunks};
    default:
        return failure(step, downloadText(step.role));
    }
}

} // namespace

QVector<Step> updateSteps(int statusTimeoutMs)
{
    QVector<Step> steps = setUpSteps(statusTimeoutMs);
    for (int written = 0; written < chunks; ++written)
        steps += chunkSteps(written);
    return steps + finalSteps();
}

QString noFaultBecause(const Step& step, StepFault fault)
{
    if (fault == StepFault::ShortAnswer && !step.isIn)
        return "nothing is answered that could be short";
    if (fault == StepFault::DfuError && !step.isDfu)
        return "only DFU requests have a DFU status";
    if (fault == StepFault::Busy && step.role == Role::SetAlternate)
        return "the virtual bus answers this request at once";
    return {};
}

Outcome expectedOutcome(const Step& step, StepFault fault)
{
    switch (fault) {
    case StepFault::Unplug:
        return withoutAnswer(step, true);
    case StepFault::Stall:
    case StepFault::Silence:
        return withoutAnswer(step, false);
    case StepFault::ShortAnswer:
        return withShortAnswer(step);
    case StepFault::DfuError:
        return withDfuError(step);
    case StepFault::Busy:
        break;
    }
    return success();
}
