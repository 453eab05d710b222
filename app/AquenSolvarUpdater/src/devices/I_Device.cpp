// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/I_Device.h"

#include <QQmlEngine>

namespace AquenSolvar::Device {

I_Device::I_Device(QObject* parent)
    : QObject(parent)
{
    // Otherwise QML would own, and delete, a device that it gets as a function's return value.
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    qRegisterMetaType<P_I_Device>("Device::P_I_Device");
    qRegisterMetaType<P_I_Device>("AquenSolvar::Device::P_I_Device");
    qRegisterMetaType<I_Device*>("Device::I_Device*");
}

I_Device::~I_Device() = default;

} // namespace AquenSolvar::Device
