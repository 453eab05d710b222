# SPDX-License-Identifier: LicenseRef-Proprietary
# Read by cpack first: the time of the archives is that of the commit, not of the build.
set(ENV{SOURCE_DATE_EPOCH} "${CPACK_ASU_SOURCE_DATE}")
