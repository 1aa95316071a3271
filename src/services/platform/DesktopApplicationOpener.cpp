#include "DesktopApplicationOpener.h"

#include "DesktopExecLine.h"
#include "TerminalLaunchError.h"

using namespace Qt::StringLiterals;

DesktopApplicationOpener::DesktopApplicationOpener(
    std::shared_ptr<const ApplicationLocating> locator, TerminalLauncher::ProcessStarter startProcess)
    : m_locator(std::move(locator))
    , m_startProcess(std::move(startProcess))
{ }

void DesktopApplicationOpener::open(const QString& desktopId) const
{
    QStringList arguments;
    if (const std::optional<QString> location = m_locator->applicationLocation(desktopId)) {
        if (const std::optional<ApplicationInformation> information = m_locator->applicationInformation(*location))
            arguments = DesktopExecLine::arguments(information->execLine);
    }
    if (arguments.isEmpty() || !m_startProcess)
        throw TerminalLaunchError::launchFailed(desktopId);
    const QString program = arguments.takeFirst();
    if (!m_startProcess(program, arguments))
        throw TerminalLaunchError::launchFailed(desktopId);
}
