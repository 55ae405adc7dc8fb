#include "receivers/recordings/transport/TransportDecoder.h"

#include <bit>
#include <random>

#include "support/sender/Mapper.h"
#include "support/sender/OuterEncoder.h"

namespace tvn2x::recordings {
namespace {

/// Keeps what it is given.
class Kept : public PacketSink
{
public:
    void Take(std::span<const uint8_t> packet, bool) override { bytes.append(packet.begin(), packet.end()); }

    std::string bytes;
};

/// tests/data/recordings/outer_code.py made both files with somebody else's blocks.
std::string Golden(const std::string& name)
{
    std::ifstream file(std::string(TVN_TEST_DATA "/recordings/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Constellation::Cell> CellsOf(int order, const std::vector<uint8_t>& bytes, bool mirrored, int turns)
{
    std::vector<std::complex<double>> points;
    sender::Mapper(order).Map(bytes, points);
    const Constellation constellation(order);
    std::vector<Constellation::Cell> cells;
    for (std::complex<double> point : points) {
        point = (mirrored ? std::conj(point) : point) * std::pow(std::complex<double>(0, 1), turns);
        cells.push_back(Constellation::CellOf(static_cast<float>(point.real()), static_cast<float>(point.imag())));
    }
    return cells;
}

TEST(TransportDecoder, GivesBackThePacketsOfSomebodyElsesEncoder)
{
    const std::string packets = Golden("packets.bin");
    const std::string sent = Golden("interleaved.bin");
    ASSERT_EQ(sent.size(), 32U * 204);
    sender::OuterEncoder own;
    for (size_t i = 0; i < 32; ++i) {
        sender::Packet packet{};
        std::copy_n(packets.begin() + static_cast<ptrdiff_t>(188 * i), 188, packet.begin());
        const std::vector<uint8_t> encoded = own.Encode(packet);
        ASSERT_EQ(std::string(encoded.begin(), encoded.end()), sent.substr(204 * i, 204)) << i;
    }
    for (const int order : {16, 32, 64, 128, 256}) {
        for (const bool inverted : {false, true}) {
            Kept kept;
            TransportDecoder decoder(Constellation(order), &kept);
            // An odd number of bytes ahead: nothing says where a byte or a frame begins.
            std::vector<uint8_t> bytes(order % 100 + 3U, 0x5A);
            bytes.insert(bytes.end(), sent.begin(), sent.end());
            decoder.Process(CellsOf(order, bytes, inverted, order % 3), true);
            EXPECT_EQ(decoder.Inverted(), inverted) << order;
            ASSERT_GE(kept.bytes.size(), 19 * 188U) << order;
            EXPECT_TRUE(kept.bytes == packets.substr(0, kept.bytes.size())) << order;
            EXPECT_EQ(decoder.Counters().correctedBits, 0U);
        }
    }
}

TEST(ReedSolomon, CorrectsEightBytesAndTellsHowManyBits)
{
    std::mt19937 random(5);
    const ReedSolomon code;
    sender::OuterEncoder encoder;
    std::array<uint8_t, 204> sent{};
    // What has gone through the interleaver is no code word: a packet of zeros has parities of zero.
    for (int wrong = 0; wrong <= 9; ++wrong) {
        for (int round = 0; round < 200; ++round) {
            std::array<uint8_t, 204> word = sent;
            int bits = 0;
            for (int i = 0; i < wrong; ++i) {
                const size_t place = static_cast<size_t>(i) * 22 + random() % 22;
                word[place] = static_cast<uint8_t>(random() % 255 + 1);
                bits += std::popcount(word[place]);
            }
            const std::array<uint8_t, 204> received = word;
            const std::optional<int> corrected = code.Correct(word);
            if (wrong <= 8) {
                ASSERT_EQ(corrected, bits) << wrong;
                ASSERT_EQ(word, sent);
            } else if (!corrected) {
                ASSERT_EQ(word, received);
            }
        }
    }
}

}  // namespace
}  // namespace tvn2x::recordings
