// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/Renderer.h"

#include "qslog/Log.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>

namespace AquenSolvar {

namespace {

// Names that drivers give themselves when the processor draws for them.
bool isProcessor(const QString& driver)
{
    for (const char* name : {"llvmpipe", "softpipe", "swrast", "SWR", "Software Rasterizer",
                             "GDI Generic", "Microsoft Basic Render"}) {
        if (driver.contains(QLatin1String(name), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

// Why OpenGL is no good here; empty when it is.
QString reasonAgainstOpenGL()
{
    if (!hasRenderDevice())
        return QStringLiteral("no render device");
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface))
        return QStringLiteral("no OpenGL");
    const QString driver = QString::fromLatin1(
        reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER)));
    return isProcessor(driver) ? driver : QString();
}

} // namespace

void chooseRenderer()
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
        qEnvironmentVariableIsSet("QMLSCENE_DEVICE"))
        return;
    const QString reason = reasonAgainstOpenGL();
    if (reason.isEmpty())
        return;
    QLOG_INFO() << "The window is drawn in software:" << reason;
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}

} // namespace AquenSolvar
