#include "tessera/SelectionFormula.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/RequestRefused.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;

const Properties message = {{"Subject", {"Lunch on Monday"}},
                            {"From", {"Pat Lee"}},
                            {"To", {"Max", "Kim\xC3\x84 Berg"}},
                            {"Importance", {"1"}},
                            {"Empty", {}}};

std::string reasonOf(const std::string& formula) {
    try {
        const SelectionFormula unused(formula);
        return "none";
    } catch (const RequestRefused& refusal) {
        EXPECT_EQ(refusal.result(), ResultCode::BadRequest);
        return refusal.what();
    }
}

std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) result += text;
    return result;
}

TEST(SelectionFormula, ChoosesMessages) {
    const std::pair<const char*, bool> rows[] = {
        {R"(Importance="1")", true},
        {R"(Importance="2")", false},
        {R"(importance = "1")", true}, // fields in any case
        {R"("1"=Importance)", true},
        {R"(From="pat lee")", false}, // and values in their own
        {R"(@LowerCase(From)="pat lee")", true},
        {R"(@Contains(Subject;"Lunch"))", true},
        {R"(@Contains(Subject;"lunch"))", false},
        {R"(@contains(@LOWERCASE(SUBJECT);@lowercase("lUnCh")))", true},
        {R"(@Contains(Subject;""))", true}, // every text holds nothing
        {R"(To="Max")", true},              // one of several values is enough
        {R"(SendTo="Max")", true},
        {R"(CopyTo="Max")", false},
        {R"(BlindCopyTo="")", true}, // a field that isn't there is empty
        {R"(Nowhere="")", true},
        {R"(@Contains(Nowhere;"x"))", false},
        {R"(Empty="")", false},                              // without any value none fits
        {"@Contains(@LowerCase(To);\"kim\xC3\xA4\")", true}, // a letter of the handheld
        {R"(!Importance="1")", false},                       // the whole comparison
        {R"(!!Importance="1")", true},
        {R"(!(Importance="2"))", true},
        {R"(Importance="1"|From="x"&From="y")", true}, // "&" binds closer
        {R"((Importance="1"|From="x")&From="y")", false},
        {R"(Importance="2"|From="x"|From="Pat Lee")", true},
        {R"(Importance="1"&From="Pat Lee"&!To="Jo")", true},
        {R"(("a")=("a"))", true},
        {R"("\"="\")", true}, // a backslash is itself
        // What the handheld sends: importance, or not the subject.
        {R"(Importance="1"|(!(@Contains(@LowerCase(Subject);@LowerCase("lunch")))))", true},
        {R"(!(@Contains(@LowerCase(Subject);@LowerCase("LUNCH"))))", false},
        {R"(@Contains(@LowerCase(Subject);@LowerCase("tea"))|@Contains(@LowerCase(SendTo);@LowerCase("max"))|@Contains(@LowerCase(From);@LowerCase("jo")))",
         true},
    };
    for (const auto& [formula, selected] : rows)
        EXPECT_EQ(SelectionFormula(formula).selects(message), selected) << formula;
}

TEST(SelectionFormula, NamesTheFieldsThatItLooksAt) {
    EXPECT_THAT(SelectionFormula(R"(@Contains(sendTo;FROM)|Other="x"|from="y")").fields(),
                ElementsAre("From", "Other", "To"));
}

TEST(SelectionFormula, TellsWhatItCannotReadAndWhere) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "its end: a text, a field, a function or '(' is expected."},
        {R"(Subject)", "character 1, 'Subject': a condition is expected, and this is a text."},
        {R"("x")", "character 1, '\"x\"': a condition is expected, and this is a text."},
        {R"(Subject=)", "its end: a text, a field, a function or '(' is expected."},
        {R"(Subject="x)", "character 9, '\"x': the closing quotation mark is missing."},
        {R"(Subject="x" From="y")", "character 13, 'From=\"y\"': '|' or '&' is expected."},
        {R"((Subject="x")", "its end: ')' is expected."},
        {R"(Subject="x"))", "character 12, ')': '|' or '&' is expected."},
        {R"(Subject="x"|From)", "character 13, 'From': a condition is expected, and this is a text."},
        {R"(From|Subject="x")",
         "character 1, 'From|Subject=\"x\"': a condition is expected, and this is a text."},
        {R"(!From)", "character 2, 'From': a condition is expected, and this is a text."},
        {R"((a="b")="c")", "character 1, '(a=\"b\")=\"c\"': a text is expected, and this is a condition."},
        {R"(@LowerCase(a="b")="c")",
         "character 12, 'a=\"b\")=\"c\"': a text is expected, and this is a condition."},
        {R"(@UpperCase(a)="b")", "character 1, '@UpperCase(a)=\"b\"': there is no such function."},
        {R"(@ Contains(a;b))", "character 1, '@ Contains(a;b)': a function has a name."},
        {R"(@Contains(a))", "character 12, ')': ';' is expected."},
        {R"(@Contains(a;b;c))", "character 14, ';c)': ')' is expected."},
        {R"(@Contains a;b)", "character 11, 'a;b': '(' is expected."},
        {R"(a="b" % c)", "character 7, '% c': nothing begins like this."},
        // A quotation mark that the user has typed into the filter.
        {R"(@Contains(@LowerCase(Subject);@LowerCase("5" disks")))",
         "character 51, '\"))': the closing quotation mark is missing."},
        {R"(@Contains(@LowerCase(Subject);@LowerCase(""tea"")))",
         "character 44, 'tea\"\"))': ')' is expected."},
        // Characters are counted, not bytes.
        {"\"\xC3\xA4\xE2\x82\xAC\"=", "its end: a text, a field, a function or '(' is expected."},
        {"\"\xC3\xA4\xE2\x82\xAC\"=)", "character 6, ')': a text, a field, a function or '(' is expected."},
        {R"(abcdefghijklmnopqrstuvwxyzabcdefghij)",
         "character 1, 'abcdefghijklmnopqrstuvwxyzabcd...': a condition is expected, and this is a text."},
    };
    for (const auto& [formula, reason] : rows)
        EXPECT_EQ(reasonOf(formula), std::string("Cannot read the selection formula at ") + reason)
            << formula;
}

TEST(SelectionFormula, IsNotEndless) {
    const std::string condition = R"(a="b")";
    EXPECT_EQ(reasonOf(repeated("(", 30) + condition + repeated(")", 30)), "none");
    EXPECT_EQ(reasonOf(repeated("(", 31) + condition + repeated(")", 31)),
              "Cannot read the selection formula at character 32, 'a=\"b\")))))))))))))))))))))))))...': the "
              "formula goes too deep.");
    EXPECT_EQ(reasonOf(repeated("!", 30) + condition), "none");
    EXPECT_NE(reasonOf(repeated("!", 100) + condition), "none");
    EXPECT_NE(reasonOf(repeated("@LowerCase(", 100)), "none");
    EXPECT_EQ(reasonOf(condition + repeated("|" + condition, 124)), "none"); // 3 + 4 * 124 + 1 words
    EXPECT_EQ(
        reasonOf(condition + repeated("|" + condition, 125)),
        "Cannot read the selection formula at character 751, 'a=\"b\"': the formula has too many words.");
    EXPECT_EQ(reasonOf("a=\"" + std::string(9996, 'x') + "\""), "none"); // 10,000 bytes
    EXPECT_NE(reasonOf("a=\"" + std::string(9997, 'x') + "\""), "none");
}

TEST(SelectionFormula, DoesNotTakeAllTimeThereIs) {
    const std::string tooLong = "The selection formula takes too long for these messages.";
    const auto reasonFor = [](const std::string& text, const Properties& properties, int messages) {
        SelectionFormula formula(text);
        try {
            while (messages-- > 0) formula.selects(properties);
            return std::string("none");
        } catch (const RequestRefused& refusal) {
            EXPECT_EQ(refusal.result(), ResultCode::BadRequest);
            return std::string(refusal.what());
        }
    };
    // Each of many values in each of many others.
    const Properties many{{"To", std::vector<std::string>(10'000, "a")},
                          {"Cc", std::vector<std::string>(10'000, "b")}};
    EXPECT_EQ(reasonFor("@Contains(To;Cc)", many, 1), tooLong);
    EXPECT_EQ(reasonFor("To=Cc", many, 1), tooLong);
    EXPECT_EQ(reasonFor("@Contains(To;\"b\")", many, 1), "none");
    // A text that ends otherwise than the part at each place.
    const Properties steps{{"Body", {std::string(1'000'000, 'a')}},
                           {"Subject", {std::string(100'000, 'a') + 'b'}}};
    EXPECT_EQ(reasonFor("@Contains(Body;Subject)", steps, 1), tooLong);
    EXPECT_EQ(reasonFor("@Contains(Body;\"ab\")", steps, 1), "none");
    // Many messages, each of which takes a little.
    const std::string conditions = "a=\"b\"" + repeated("|@Contains(Body;\"b\")", 60);
    EXPECT_EQ(reasonFor(conditions, {{"Body", {std::string(100'000, 'a')}}}, 1), "none");
    EXPECT_EQ(reasonFor(conditions, {{"Body", {std::string(100'000, 'a')}}}, 10'000), tooLong);
    // A filter over ten thousand of them.
    EXPECT_EQ(reasonFor(R"(Importance="x"|(!(@Contains(@LowerCase(Subject);@LowerCase("Lunch")))))", message,
                        10'000),
              "none");
}

} // namespace
} // namespace tsr
