#include "receivers/recordings/transport/TransportDecoder.h"

#include <bit>
#include <functional>
#include <random>
#include <utility>

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

/// What becomes of a stream of 320 packets that is spoilt in the middle, as "F" and "P" with the number of the block in
/// which frames and packets come to be there, "f" and "p" where they go, and what was counted.
std::string StoryOf(const std::function<void(std::vector<uint8_t>&)>& spoil, size_t uncertainBlock = 999)
{
    sender::OuterEncoder encoder;
    std::vector<uint8_t> sent;
    for (uint32_t number = 0; number < 320; ++number) {
        const std::vector<uint8_t> encoded = encoder.Encode(sender::NumberedPacket(number));
        sent.insert(sent.end(), encoded.begin(), encoded.end());
    }
    spoil(sent);
    const std::vector<Constellation::Cell> cells = CellsOf(64, sent, false, 0);
    TransportDecoder decoder(Constellation(64), nullptr);
    std::string story;
    bool frames = false;
    bool packets = false;
    for (size_t block = 0; block < cells.size() / 1024; ++block) {
        decoder.Process(std::span(cells).subspan(block * 1024, 1024), block != uncertainBlock);
        if (std::exchange(frames, decoder.FrameLocked()) != frames) {
            story += (frames ? "F" : "f") + std::to_string(block) + " ";
        }
        if (std::exchange(packets, decoder.PacketsLocked()) != packets) {
            story += (packets ? "P" : "p") + std::to_string(block) + " ";
        }
    }
    const PacketCounters& counters = decoder.Counters();
    return story + std::to_string(counters.failedPackets) + " of " + std::to_string(counters.packets) + " failed, " +
           std::to_string(counters.lostSymbols) + " symbols lost";
}

TEST(TransportDecoder, ComesBackWhateverHasSpoiltTheStream)
{
    const auto spoilt = [](size_t from, size_t to, size_t every) {
        return [=](std::vector<uint8_t>& sent) {
            for (size_t i = from * 204; i < to * 204; ++i) {
                sent[i] = static_cast<uint8_t>(sent[i] ^ (i % every != 0 ? 0x55 : 0));
            }
        };
    };
    EXPECT_EQ(StoryOf(spoilt(0, 0, 1)), "F3 P3 0 of 309 failed, 0 symbols lost");
    EXPECT_EQ(StoryOf(spoilt(100, 110, 204)), "F3 P3 21 of 309 failed, 0 symbols lost") << "a few packets";
    EXPECT_EQ(StoryOf(spoilt(100, 150, 204)), "F3 P3 p32 P43 61 of 309 failed, 0 symbols lost") << "many";
    EXPECT_EQ(StoryOf(spoilt(100, 240, 204)), "F3 P3 p32 f52 F56 P67 139 of 297 failed, 4096 symbols lost")
        << "as if frames were cut wrongly";
    EXPECT_EQ(StoryOf(spoilt(100, 150, 100000)), "F3 P3 f28 p28 F43 P44 8 of 254 failed, 15360 symbols lost")
        << "synchronisation bytes, too";
    EXPECT_EQ(StoryOf([](std::vector<uint8_t>& sent) { sent.erase(sent.begin() + 30000); }),
              "F3 P3 f41 p41 F45 P46 9 of 291 failed, 4096 symbols lost")
        << "one byte is gone";
    EXPECT_EQ(StoryOf(spoilt(0, 0, 1), 60), "F3 P3 f60 p60 F64 P65 0 of 293 failed, 5120 symbols lost")
        << "the carrier was lost";
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
