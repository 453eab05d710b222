# SPDX-License-Identifier: LicenseRef-Proprietary
# Writes the header SourceRevision.h with the revision of the sources, only when that has changed. Each
# build runs it, because a commit does not configure the project again.
#   cmake -DHEADER=FILE -DSOURCES=FOLDER -DGIT=PROGRAM -DREVISION=ID -P SourceRevision.cmake
# REVISION takes precedence over git. Without both the revision is unknown: forty zeros.
set(revision "${REVISION}")
if(NOT revision AND GIT)
    execute_process(COMMAND "${GIT}" rev-parse HEAD WORKING_DIRECTORY "${SOURCES}"
        OUTPUT_VARIABLE revision OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
string(REPEAT "[0-9a-f]" 40 pattern)
if(NOT revision MATCHES "^${pattern}$")
    string(REPEAT "0" 40 revision)
endif()
file(CONFIGURE OUTPUT "${HEADER}" @ONLY CONTENT [[
// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace Common::BuildFacts {

constexpr char sourceRevision[] = "@revision@";

} // namespace Common::BuildFacts
]])
