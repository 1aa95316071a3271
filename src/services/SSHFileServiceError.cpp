#include "SSHFileServiceError.h"

using namespace Qt::StringLiterals;

SSHFileServiceError::SSHFileServiceError(Kind kind, QString path)
    : m_kind(kind)
    , m_path(std::move(path))
{ }

SSHFileServiceError SSHFileServiceError::writeVerificationFailed(QString path)
{
    return SSHFileServiceError(Kind::writeVerificationFailed, std::move(path));
}

QString SSHFileServiceError::description() const
{
    switch (m_kind) {
    case Kind::writeVerificationFailed:
        return u"Verificatie van opgeslagen bestand mislukt op "_s + m_path + u"."_s;
    }
    return {};
}
