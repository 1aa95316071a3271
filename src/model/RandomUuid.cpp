#include "RandomUuid.h"

#include <QRandomGenerator>

#include <array>

namespace
{
// xoshiro256** (Blackman and Vigna): a few shifts and multiplies per draw. Ids need to be unique,
// not secret, and a known_hosts file of a million lines asks for two million of them at load.
class FastGenerator
{
public:
    FastGenerator()
    {
        // The system source never yields an all-zero state in practice; guard anyway, as that
        // state would repeat forever.
        QRandomGenerator::system()->fillRange(m_state.data(), static_cast<qsizetype>(m_state.size()));
        if (m_state == std::array<quint64, 4>{})
            m_state[0] = 0x9E3779B97F4A7C15ULL;
    }

    quint64 next()
    {
        const quint64 result = rotateLeft(m_state[1] * 5, 7) * 9;
        const quint64 shifted = m_state[1] << 17;
        m_state[2] ^= m_state[0];
        m_state[3] ^= m_state[1];
        m_state[1] ^= m_state[2];
        m_state[0] ^= m_state[3];
        m_state[2] ^= shifted;
        m_state[3] = rotateLeft(m_state[3], 45);
        return result;
    }

private:
    static quint64 rotateLeft(quint64 x, int k) { return (x << k) | (x >> (64 - k)); }

    std::array<quint64, 4> m_state{};
};
} // namespace

QUuid createRandomUuid()
{
    thread_local FastGenerator generator;
    const quint64 high = generator.next();
    const quint64 low = generator.next();

    const auto byteOf = [low](int index) { return static_cast<uchar>(low >> (8 * index)); };
    return QUuid(static_cast<uint>(high >> 32), static_cast<ushort>(high >> 16),
                 static_cast<ushort>((high & 0x0FFF) | 0x4000), // version 4
                 static_cast<uchar>((byteOf(0) & 0x3F) | 0x80), // RFC 4122 variant
                 byteOf(1), byteOf(2), byteOf(3), byteOf(4), byteOf(5), byteOf(6), byteOf(7));
}
