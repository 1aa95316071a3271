#pragma once

#include "ServiceError.h"

#include <QString>

/// The failures of the safe save that are the file service's own rather than the platform's.
/// Directory creation, copy, write and read failures come as PlatformError instead.
class SSHFileServiceError final : public ServiceError
{
public:
    enum class Kind {
        /// The file was written and read back, but its text is not the text that was meant to be written.
        writeVerificationFailed,
    };

    /// The read-back of the file at path gave another text than was written.
    static SSHFileServiceError writeVerificationFailed(QString path);

    Kind kind() const { return m_kind; }
    /// The file-system path of the file the failure concerns.
    QString path() const { return m_path; }

    /// "Verificatie van opgeslagen bestand mislukt op <path>."
    QString description() const override;

private:
    SSHFileServiceError(Kind kind, QString path);

    Kind m_kind;
    QString m_path;
};
