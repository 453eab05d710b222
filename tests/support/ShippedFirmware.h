#pragma once

#include <QByteArray>

/// Puts a bundle with that image for each kind beside the running program, as it is shipped.
/// Programs of one folder may do so at the same time. False when one cannot be written.
bool shipFirmware(const QByteArray& aquenImage, const QByteArray& solvarImage);
