#include "RandomUuid.h"

#include <QRandomGenerator>

#include <array>
#include <random>

namespace
{
// Ids need to be unique, not secret; a standard engine seeded once from the system is fast enough
// for the two ids per line that a large known_hosts file asks for at load.
std::mt19937_64 seededEngine()
{
    std::array<quint32, std::mt19937_64::state_size> seed {};
    QRandomGenerator::system()->fillRange(seed.data(), static_cast<qsizetype>(seed.size()));
    std::seed_seq sequence(seed.begin(), seed.end());
    return std::mt19937_64(sequence);
}
} // namespace

QUuid createRandomUuid()
{
    thread_local std::mt19937_64 engine = seededEngine();
    const quint64 high = engine();
    const quint64 low = engine();

    const auto byteOf = [low](int index) { return static_cast<uchar>(low >> (8 * index)); };
    return QUuid(static_cast<uint>(high >> 32), static_cast<ushort>(high >> 16),
        static_cast<ushort>((high & 0x0FFF) | 0x4000), // version 4
        static_cast<uchar>((byteOf(0) & 0x3F) | 0x80), // RFC 4122 variant
        byteOf(1), byteOf(2), byteOf(3), byteOf(4), byteOf(5), byteOf(6), byteOf(7));
}
