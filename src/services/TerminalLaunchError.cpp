#include "TerminalLaunchError.h"

using namespace Qt::StringLiterals;

QString TerminalLaunchError::description() const
{
    switch (m_kind) {
    case Kind::appleScriptFailed:
        return u"Terminalscript mislukt: "_s + m_payload;
    case Kind::launchFailed:
        return u"Terminal app openen mislukt voor "_s + m_payload + u"."_s;
    case Kind::warpConfigWriteFailed:
        return u"Warp launch config schrijven mislukt op "_s + m_payload + u"."_s;
    case Kind::invalidURI:
        return u"Ongeldige URI: "_s + m_payload;
    case Kind::uriOpenFailed:
        return u"Openen van URI mislukt: "_s + m_payload;
    }
    Q_UNREACHABLE();
    return {};
}
