#include "qslog/Level.h"

namespace QsLogging {

namespace {

// Indexed by the numeric level.
constexpr const char* levelTexts[] = {
    "\x1b[0;37mTRACE\x1b[0m",
    "\x1b[1;33mDEBUG\x1b[0m",
    "\x1b[1;30mINFO\x1b[0m",
    "\x1b[1;31mWARN\x1b[0m",
    "\x1b[31mERROR\x1b[0m",
    "\x1b[31mFATAL\x1b[0m",
    "",
};

} // namespace

QString levelText(Level level)
{
    const bool known = level >= Level::Trace && level <= Level::Off;
    return QString::fromLatin1(levelTexts[static_cast<qint32>(known ? level : Level::Info)]);
}

} // namespace QsLogging
