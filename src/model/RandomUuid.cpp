#include "RandomUuid.h"

#include <QRandomGenerator>

#include <random>

namespace
{
std::mt19937_64 seededGenerator()
{
    std::seed_seq seed{QRandomGenerator::system()->generate(), QRandomGenerator::system()->generate(),
                       QRandomGenerator::system()->generate(), QRandomGenerator::system()->generate(),
                       QRandomGenerator::system()->generate(), QRandomGenerator::system()->generate(),
                       QRandomGenerator::system()->generate(), QRandomGenerator::system()->generate()};
    return std::mt19937_64(seed);
}
} // namespace

QUuid createRandomUuid()
{
    thread_local std::mt19937_64 generator = seededGenerator();
    const quint64 high = generator();
    const quint64 low = generator();

    const auto byteOf = [low](int index) { return static_cast<uchar>(low >> (8 * index)); };
    return QUuid(static_cast<uint>(high >> 32), static_cast<ushort>(high >> 16),
                 static_cast<ushort>((high & 0x0FFF) | 0x4000), // version 4
                 static_cast<uchar>((byteOf(0) & 0x3F) | 0x80), // RFC 4122 variant
                 byteOf(1), byteOf(2), byteOf(3), byteOf(4), byteOf(5), byteOf(6), byteOf(7));
}
