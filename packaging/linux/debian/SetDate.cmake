# Read by cpack before anything else: the archives' time is the commit's, not the clock's.
set(ENV{SOURCE_DATE_EPOCH} "${CPACK_ASU_SOURCE_DATE}")
