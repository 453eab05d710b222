if(WIN32)
    set(sleep_inhibitor src/SleepInhibitor_win.cpp)
else()
    find_package(Qt5 5.9 REQUIRED COMPONENTS DBus)
    set(sleep_inhibitor src/SleepInhibitor_logind.cpp)
endif()

# The application's classes apart from the entry point and the user interface's documents.
add_library(AquenSolvarApp STATIC
    src/ApplicationAnswers.cpp src/ApplicationAnswers.h
    src/AquenSolvarDevice.cpp src/AquenSolvarDevice.h
    src/AquenSolvarDfuDevice.cpp src/AquenSolvarDfuDevice.h
    src/AquenSolvarFilterProxyModel.cpp src/AquenSolvarFilterProxyModel.h
    src/AquenSolvarFirmwareUpdateTask.cpp src/AquenSolvarFirmwareUpdateTask.h
    src/AquenSolvarListModel.cpp src/AquenSolvarListModel.h
    src/AquenSolvarTaskFactory.cpp src/AquenSolvarTaskFactory.h
    src/AquenSolvarWatcher.cpp src/AquenSolvarWatcher.h
    src/DFUDownloadJob.cpp src/DFUDownloadJob.h
    src/DetachedJob.cpp src/DetachedJob.h
    src/DfuDevice.cpp src/DfuDevice.h
    src/DfuProtocol.cpp src/DfuProtocol.h
    src/DownloadTexts.cpp src/DownloadTexts.h
    src/I_Device.cpp src/I_Device.h
    src/InstanceGuard.cpp src/InstanceGuard.h
    src/MemoryLayout.cpp src/MemoryLayout.h
    src/SleepInhibitor.h ${sleep_inhibitor}
    src/UnitKind.cpp src/UnitKind.h)
target_include_directories(AquenSolvarApp PUBLIC src)
target_link_libraries(AquenSolvarApp PUBLIC USB FirmwareBundle Common qslog Qt5::Core Qt5::Qml
                                     PRIVATE $<$<NOT:$<PLATFORM_ID:Windows>>:Qt5::DBus>
                                             project_options)
