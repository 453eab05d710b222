#include "qslog/Log.h"

#include "qslog/LoggerRegistry.h"

namespace QsLogging {

Logger* callSiteLogger(const char* file)
{
    return getLogger(loggerNameOf(file)).get();
}

} // namespace QsLogging
