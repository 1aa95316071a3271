#include "ServiceError.h"

const char* ServiceError::what() const noexcept
{
    if (m_what.isEmpty())
        m_what = description().toUtf8();
    return m_what.constData();
}
