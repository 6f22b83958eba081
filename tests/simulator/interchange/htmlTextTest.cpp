#include "interchange/htmlText.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

TEST(HtmlText, ReducesAPageToItsText) {
    const struct {
        const char* html;
        const char* text;
    } rows[] = {
        {"", ""},
        {"plain", "plain"},
        {"  a \r\n\t b  ", "a b"}, // white space is one blank
        {"<p>one</p><p>two</p>", "one\n\ntwo"},
        {"one<br>two<BR/>three", "one\ntwo\nthree"},
        {"<div>one</div><div>two</div>", "one\ntwo"},
        {"<ul><li>milk<li>bread</ul>end", "- milk\n- bread\n\nend"},
        {"<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>", "a b\nc"},
        {"a <b>bold</b> word", "a bold word"},
        {"a<a href=\"x>y\">link", "ay\">link"}, // a tag ends at the first >
        {"<html><head><title>no</title></head><body>yes</body></html>", "yes"},
        {"a<script>if (1 < 2) {}</script>b<STYLE>p {}</sTyle>c", "abc"},
        {"a<!-- <p>no --> b", "a b"},
        {"a<script>no end", "a"},
        {"a<!-- no end", "a"},
        {"a<b no end", "a"},
        {"1 < 2 & 3 > 2", "1 < 2 & 3 > 2"}, // no tag and no entity
        {"&lt;b&gt;&amp;&quot;&nbsp;x", "<b>&\" x"},
        {"&auml;&#228;&#xe4;&#XE4;", "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4"},
        {"&euro;&#128512;", "\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"&unknown; &; &#; &#xg; &#12 &", "&unknown; &; &#; &#xg; &#12 &"},
        {"&#0;&#xD800;&#1114112;", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // no characters
        {"<", "<"},
        {"</", ""},
    };
    for (const auto& row : rows) EXPECT_EQ(htmlText(row.html), row.text) << row.html;
}

} // namespace
} // namespace tsr
