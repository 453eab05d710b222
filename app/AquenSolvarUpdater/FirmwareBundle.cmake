add_library(FirmwareBundle STATIC src/FirmwareBundle.cpp src/FirmwareBundle.h)
target_include_directories(FirmwareBundle PUBLIC src)
target_link_libraries(FirmwareBundle PUBLIC Qt5::Core PRIVATE Common qslog project_options)
