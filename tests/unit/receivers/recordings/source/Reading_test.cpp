#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "receivers/recordings/source/RecordingError.h"
#include "receivers/recordings/source/RecordingFolder.h"
#include "receivers/recordings/source/RecordingStream.h"
#include "receivers/recordings/source/SigmfFile.h"
#include "receivers/recordings/source/WavFile.h"

namespace tvn2x::recordings {
namespace {

using testing::HasSubstr;

/// A file in memory.
class MemoryBytes final : public StoredBytes
{
public:
    explicit MemoryBytes(std::string bytes) : bytes_(std::move(bytes)) {}
    uint64_t Size() const override { return bytes_.size(); }
    size_t ReadAt(uint64_t offset, std::span<char> into) override
    {
        const size_t at = std::min<size_t>(bytes_.size(), static_cast<size_t>(offset));
        return bytes_.copy(into.data(), into.size(), at);
    }

private:
    std::string bytes_;
};

template <class Number>
std::string Bytes(Number number)
{
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

std::string Chunk(const std::string& name, const std::string& content, uint32_t length)
{
    return name + Bytes(length) + content;
}

std::string Format(uint16_t code, uint16_t channels, uint32_t rate, uint16_t bits)
{
    return Chunk("fmt ",
                 Bytes(code) + Bytes(channels) + Bytes(rate) + Bytes(rate * 4) + Bytes<uint16_t>(4) + Bytes(bits), 16);
}

std::wstring ErrorOf(const std::function<void()>& statement)
{
    try {
        statement();
    } catch (const RaisedError& raised) {
        EXPECT_EQ(raised.number, unusableRecording);
        return raised.description;
    }
    return L"no error";
}

SigmfRecordings Read(const std::string& text, uint64_t length = 800, std::optional<double> fullScale = {})
{
    return ReadSigmf(
        L"/s/a.sigmf-meta", text,
        [&](const std::wstring& data) { return data == L"gone" ? std::nullopt : std::optional(length); }, fullScale);
}

std::string Metadata(const std::string& global, const std::string& captures)
{
    return R"({"global":{"core:datatype":"ci16_le","core:sample_rate":1e7)" + global + R"(},"captures":[)" + captures +
           "]}";
}

TEST(SigmfFile, ReadsEachCaptureAsFarAsTheDataGo)
{
    const SigmfRecordings read = Read(
        Metadata(
            R"(,"tvn2x:full_scale_dbuv":110)",
            R"({"core:frequency":306e6},{"core:sample_start":150,"core:frequency":314000000,"core:header_bytes":8,)"
            R"("tvn2x:full_scale_dbuv":97.5},{"core:sample_start":5000,"core:frequency":1})"),
        803, 50);
    EXPECT_EQ(read.data, L"a.sigmf-data");
    ASSERT_EQ(read.recordings.size(), 2U) << "the third begins behind the end";
    EXPECT_EQ(read.recordings[0].file, L"/s/a.sigmf-data");
    EXPECT_EQ(read.recordings[0].samples, 150U);
    EXPECT_EQ(read.recordings[0].fullScale, 110);
    EXPECT_EQ(read.recordings[1].firstByte, 608U);
    EXPECT_EQ(read.recordings[1].samples, 48U);
    EXPECT_EQ(read.recordings[1].frequency, 314e6);
    EXPECT_EQ(read.recordings[1].fullScale, 97.5);
    EXPECT_EQ(Read(Metadata("", R"({"core:frequency":1})"), 8, 50).recordings[0].fullScale, 50);
    EXPECT_EQ(Read(Metadata("", R"({"core:frequency":1})")).recordings[0].fullScale, std::nullopt);
}

TEST(SigmfFile, NamesWhatIsWrong)
{
    const std::pair<std::string, std::wstring> cases[] = {
        {"{\"global\":{", L"byte 12"},
        {"[]", L"global is missing"},
        {R"({"global":1e999})", L"too large"},
        {Metadata(R"(,"core:dataset":"gone")", "{}"), L"gone, which is not in its folder"},
        {Metadata(R"(,"core:dataset":"../x")", "{}"), L"the same folder"},
        {Metadata(R"(,"core:num_channels":2)", "{}"), L"core:num_channels"},
        {Metadata("", ""), L"no captures"},
        {R"({"global":{"core:datatype":"cu8","core:sample_rate":1e6}})", L"no captures"},
        {R"({"global":{"core:datatype":"cu8","core:sample_rate":1e6},"captures":{"0":{}}})", L"no captures"},
        {Metadata("", "1"), L"captures[0] is missing, or is no object"},
        {Metadata("", R"({"core:frequency":"306"})"), L"captures[0], core:frequency is missing, or is no number"},
        {Metadata("", R"({"core:frequency":-1})"), L"is -1, and it must be from 0 to 100000000000"},
        {Metadata("", R"({"core:frequency":1,"core:sample_start":2},{"core:frequency":1})"), L"captures[1]"},
        {R"({"global":{"core:datatype":"cf64_le"}})", L"what is read is cf32_le, ci16_le, ci8 and cu8"},
        {R"({"global":{"core:datatype":8}})", L"core:datatype is missing, or is no text"},
        {R"({"global":{"core:datatype":"cu8","core:sample_rate":0}})", L"core:sample_rate is 0"},
    };
    for (const auto& [text, what] : cases) {
        const std::wstring error = ErrorOf([&text = text] { Read(text); });
        EXPECT_THAT(error, HasSubstr(what)) << text;
        EXPECT_THAT(error, HasSubstr(L"/s/a.sigmf-meta")) << text;
    }
}

TEST(WavFile, ReadsHeadsThatLieAboutTheirLength)
{
    const std::string samples(42, 'x');
    const std::string auxiliary = Chunk("auxi", std::string(32, '\0') + Bytes<uint32_t>(306000000), 36);
    const std::string wave = "RIFF" + Bytes<uint32_t>(0) + "WAVE" + Format(1, 2, 2000000, 16) + auxiliary;
    for (const uint32_t length : {0U, 42U, 4000000000U, 0xFFFFFFFFU}) {
        MemoryBytes file(wave + Chunk("data", samples, length));
        const Recording read = ReadWav(L"x.wav", file, {});
        EXPECT_EQ(read.samples, 10U) << length;
        EXPECT_EQ(read.firstByte, wave.size() + 8);
        EXPECT_EQ(read.frequency, 306e6);
    }
    MemoryBytes large("RF64" + Bytes(0xFFFFFFFFU) + "WAVE" +
                      Chunk("ds64", Bytes<uint64_t>(0) + Bytes<uint64_t>(16), 16) + Format(3, 2, 2000000, 32) +
                      Chunk("data", samples, 0xFFFFFFFFU));
    const std::string extension = Bytes<uint16_t>(22) + Bytes<uint16_t>(32) + Bytes(3) + Bytes<uint16_t>(3);
    MemoryBytes extensible("RIFF1234WAVE" + Format(0xFFFE, 2, 2000000, 32).replace(4, 4, Bytes(40)) + extension +
                           std::string(14, '\0') + Chunk("data", samples, 42));
    EXPECT_EQ(ReadWav(L"306 MHz.wav", extensible, {}).format, SampleFormat::float32);
    EXPECT_EQ(ReadWav(L"cable_306.5 MHz.wav", large, 90).samples, 2U);
    EXPECT_EQ(ReadWav(L"cable_306.5 MHz.wav", large, 90).frequency, 306.5e6);
    EXPECT_EQ(FrequencyInName(L"SDR_20260101_306000kHz_IQ.wav"), 306e6);
    EXPECT_EQ(FrequencyInName(L"Hz kHz.wav"), std::nullopt);

    const std::pair<std::string, std::wstring> refused[] = {
        {"RIFX", L"byte 0: this is no WAV file"},
        {wave.substr(0, 30), L"byte 30: the file ends before its format"},
        {wave, L"before its samples"},
        {"RIFF1234WAVE" + Format(1, 1, 2000000, 16), L"byte 22: it has 1 channels"},
        {"RIFF1234WAVE" + Format(1, 2, 2000000, 24), L"samples of 24 bits"},
        {"RIFF1234WAVE" + Format(1, 2, 7, 16) + Chunk("data", samples, 42), L"byte 24: the rate is 7"},
        {"RIFF1234WAVE" + Format(1, 2, 2000000, 16) + Chunk("data", samples, 42), L"centre frequency"},
    };
    for (const auto& [bytes, what] : refused) {
        MemoryBytes cut(bytes);
        EXPECT_THAT(ErrorOf([&] { ReadWav(L"x.wav", cut, {}); }), HasSubstr(what));
    }
}

TEST(RecordingStream, ReadsEveryFormatToTheEndOfTheFile)
{
    const std::tuple<SampleFormat, std::string, std::complex<float>> cases[] = {
        {SampleFormat::float32, Bytes(0.5F) + Bytes(-1.0F), {0.5F, -1}},
        {SampleFormat::integer16, Bytes<int16_t>(16384) + Bytes<int16_t>(-32768), {0.5F, -1}},
        {SampleFormat::integer8, Bytes<int8_t>(64) + Bytes<int8_t>(-128), {0.5F, -1}},
        {SampleFormat::unsigned8, Bytes<uint8_t>(255) + Bytes<uint8_t>(0), {1, -1}},
    };
    for (const auto& [format, bytes, value] : cases) {
        // One byte is missing of the third sample, or what follows is not the recording's.
        for (const uint64_t recorded : {3U, 2U}) {
            RecordingStream stream({.file = L"f", .format = format, .firstByte = 3, .samples = recorded, .rate = 1e6},
                                   std::make_unique<MemoryBytes>("abc" + bytes + bytes + bytes.substr(recorded - 2)));
            std::vector<std::complex<float>> samples(8);
            EXPECT_EQ(stream.Read(std::span(samples).first(1)), 1U);
            EXPECT_EQ(stream.Read(samples), 1U);
            EXPECT_EQ(samples[0], value);
            EXPECT_EQ(stream.Read(samples), 0U);
        }
    }
    for (const float fault : {std::nanf(""), std::numeric_limits<float>::infinity(), 1e20F}) {
        RecordingStream stream({.file = L"f", .firstByte = 4, .samples = 2, .rate = 1e6},
                               std::make_unique<MemoryBytes>("abcd" + std::string(12, '\0') + Bytes(fault)));
        std::vector<std::complex<float>> samples(2);
        EXPECT_THAT(ErrorOf([&] { stream.Read(samples); }), HasSubstr(L"f, byte 12"));
    }
}

TEST(RecordingFolder, FindsTheRecordingWithTheChannelFarthestFromItsEdges)
{
    const std::filesystem::path path = testing::TempDir() + "recordings";
    std::filesystem::remove_all(path);
    EXPECT_THAT(ErrorOf([&] { RecordingFolder(path.wstring()); }), HasSubstr(L"cannot be read"));
    std::filesystem::create_directories(path);
    EXPECT_THAT(ErrorOf([&] { RecordingFolder(path.wstring()); }), HasSubstr(L"holds no recording"));
    const auto put = [&](const std::string& name, const std::string& bytes) {
        std::ofstream(path / name, std::ios::binary) << bytes;
    };
    put("b.SIGMF-META", Metadata(R"(,"core:dataset":"b.wav")", R"({"core:frequency":308e6,"core:header_bytes":44})"));
    put("b.wav", std::string(400, '\0'));
    for (const std::string name : {"a", "c"}) {  // in no order that a system may keep
        put(name + ".sigmf-meta",
            Metadata("", R"({"core:frequency":)" + std::string(name == "a" ? "306e6}" : "406e6}")));
        put(name + ".sigmf-data", std::string(400, '\0'));
    }
    put("recordings.json", R"({"tvn2x:full_scale_dbuv": 101.5})");
    const RecordingFolder folder(path.wstring());
    EXPECT_EQ(folder.Recordings().size(), 3U) << "the WAV file is described by its metadata";
    ASSERT_NE(folder.Find(306.5e6, 8e6), nullptr);
    EXPECT_EQ(folder.Find(306.5e6, 8e6)->FileName(), L"a.sigmf-data");
    EXPECT_EQ(folder.Find(307.5e6, 8e6)->FileName(), L"b.wav");
    EXPECT_EQ(folder.Find(307.5e6, 8e6)->fullScale, 101.5);
    EXPECT_EQ(folder.Find(309.1e6, 8e6), nullptr);
    EXPECT_EQ(folder.Bands(), L"a.sigmf-data 301 to 311 MHz; b.wav 303 to 313 MHz; c.sigmf-data 401 to 411 MHz");
    put("recordings.json", R"({"full_scale": 101.5})");
    EXPECT_THAT(ErrorOf([&] { RecordingFolder(path.wstring()); }), HasSubstr(L"recordings.json: calibration"));
}

}  // namespace
}  // namespace tvn2x::recordings
