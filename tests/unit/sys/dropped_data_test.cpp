#include "sys/dropped_data.h"

#include "tests/support/data_object.h"
#include "tests/support/unit_test.h"

namespace sys {
namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::DataObject, testkit::RecordedCall;

constexpr CLIPFORMAT kUnicodeText = 13;
constexpr CLIPFORMAT kFileList = 15;

void ExpectData(const std::optional<DroppedData>& data, bool isText, const std::string& value) {
    ASSERT_TRUE(data.has_value());
    EXPECT_EQ(data->isText, isText);
    EXPECT_EQ(data->value, value);
}

TEST(DroppedDataTest, TakesUnicodeTextAndLooksForNothingElse) {
    DataObject object;
    object.OfferText("C:\\Документы\\文.txt");
    object.OfferFiles({"C:\\other.txt"});
    ExpectData(ReadDroppedData(&object), true, "C:\\Документы\\文.txt");
    EXPECT_THAT(object.Calls(), ElementsAre("query 13", "get 13"));
}

TEST(DroppedDataTest, TakesTheFirstFileWhenThereIsNoText) {
    DataObject object;
    object.OfferFiles({"C:\\Żółty plik.txt", "C:\\second.txt", "C:\\third.txt"});
    ExpectData(ReadDroppedData(&object), false, "C:\\Żółty plik.txt");
    EXPECT_THAT(object.Calls(), ElementsAre("query 13", "query 15", "get 15"));
}

TEST(DroppedDataTest, GivesNothingForAnyOtherFormat) {
    DataObject object;
    object.Offer(CF_TEXT, "C:\\a.txt");
    EXPECT_FALSE(ReadDroppedData(&object).has_value());
    EXPECT_FALSE(OffersDroppableData(&object));
}

TEST(DroppedDataTest, TellsWhatCanBeDropped) {
    DataObject text;
    text.OfferText("x");
    EXPECT_TRUE(OffersDroppableData(&text));
    DataObject files;
    files.OfferFiles({"C:\\a.txt"});
    EXPECT_TRUE(OffersDroppableData(&files));
    EXPECT_THAT(files.Calls(), ElementsAre("query 13", "query 15"));
}

TEST(DroppedDataTest, TakesTheFilesWhenThePromisedTextDoesNotCome) {
    DataObject object;
    object.Promise(kUnicodeText);
    object.OfferFiles({"C:\\a.txt"});
    ExpectData(ReadDroppedData(&object), false, "C:\\a.txt");
}

/// Offers text, and hands out something else than memory.
class StreamObject : public DataObject {
  public:
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
        const HRESULT result = DataObject::GetData(format, medium);
        if (result == S_OK && format->cfFormat == kUnicodeText) {
            ReleaseStgMedium(medium);
            *medium = {};
            medium->tymed = TYMED_ISTREAM;
        }
        return result;
    }
};

TEST(DroppedDataTest, TakesNothingThatIsNoMemory) {
    StreamObject object;
    object.OfferText("text");
    EXPECT_FALSE(ReadDroppedData(&object).has_value());
    object.OfferFiles({"C:\\a.txt"});
    ExpectData(ReadDroppedData(&object), false, "C:\\a.txt");
}

TEST(DroppedDataTest, ReadsNoTextWhereThereIsNoMemory) { EXPECT_EQ(WideTextIn(nullptr), ""); }

TEST(DroppedDataTest, EndsATextWhereItsMemoryEnds) {
    DataObject object;
    const wchar_t text[] = {L'a', L'b', L'c'};  // no NUL
    object.Offer(kUnicodeText, std::string(reinterpret_cast<const char*>(text), sizeof text));
    const auto data = ReadDroppedData(&object);
    ASSERT_TRUE(data.has_value());
    // The block may be larger than what was asked for, never smaller.
    EXPECT_EQ(data->value.substr(0, 3), "abc");
    EXPECT_LE(data->value.size(), 8u);
}

TEST(DroppedDataTest, EndsATextAtItsFirstNul) {
    DataObject object;
    object.OfferText(std::string_view("one\0two", 7));
    ExpectData(ReadDroppedData(&object), true, "one");
}

TEST(DroppedDataTest, ReadsEmptyAndHugeTexts) {
    DataObject empty;
    empty.OfferText("");
    ExpectData(ReadDroppedData(&empty), true, "");
    DataObject huge;
    const std::string megabyte(1024 * 1024, 'x');
    huge.OfferText(megabyte);
    ExpectData(ReadDroppedData(&huge), true, megabyte);
}

TEST(DroppedDataTest, ReadsAnEmptyFileListAsNoFile) {
    DataObject object;
    object.OfferFiles({});
    ExpectData(ReadDroppedData(&object), false, "");
}

TEST(DroppedDataTest, ReadsAPathLongerThan260Characters) {
    std::string path = "C:";
    while (path.size() < 400)
        path += "\\папка文";
    DataObject object;
    object.OfferFiles({path});
    ExpectData(ReadDroppedData(&object), false, path);
}

TEST(DroppedDataTest, FreesEveryMediumThatItGets) {
    CallLog log;
    const RecordedCall free = LOG_CALL(log, ReleaseStgMedium);
    DataObject object;
    object.OfferText("x");
    ReadDroppedData(&object);
    DataObject files;
    files.OfferFiles({"C:\\a.txt"});
    ReadDroppedData(&files);
    EXPECT_EQ(object.MediaGiven() + files.MediaGiven(), 2);
    EXPECT_EQ(log.Count("ReleaseStgMedium"), 2u);
}

TEST(DroppedDataTest, CutsATextAtItsFirstLineFeed) {
    EXPECT_EQ(FirstLine("https://a.example/\r\nTitle\r\n"), "https://a.example/");
    EXPECT_EQ(FirstLine("one\ntwo\nthree"), "one");
    EXPECT_EQ(FirstLine("one\r"), "one");
    EXPECT_EQ(FirstLine("one\rtwo"), "one\rtwo");
    EXPECT_EQ(FirstLine("one"), "one");
    EXPECT_EQ(FirstLine("\r\nC:\\a.txt"), "");
    EXPECT_EQ(FirstLine(""), "");
}

}  // namespace
}  // namespace sys
