// XML documents: nothing that was not changed is changed, what is saved loads again, and what is no
// XML is refused with its place.

#include "pokermath/markup.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

CMarkup Loaded(const std::string& text) {
  CMarkup doc;
  EXPECT_TRUE(doc.LoadUtf8(text)) << ToUtf8(doc.ErrorText());
  return doc;
}

std::string Repeated(const std::string& piece, int count) {
  std::string text;
  for (; count > 0; --count) text += piece;
  return text;
}

// What an object says, to be compared with a second one.
std::string Walk(CMarkup doc) {
  std::string said;
  if (!doc.ToRoot()) return said;
  do {
    said += ToUtf8(doc.Name() + L"|" + doc.Data());
    for (const CString& name : doc.AttributeNames()) {
      said += ToUtf8(L"|" + name + L"=" + doc.Attribute(name));
    }
    said += "\n";
  } while (doc.Find());
  return said;
}

constexpr const char* kPlayers =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE room [<!ENTITY site "Card &amp; Co"><!ENTITY a SYSTEM "file:///etc/passwd">]>
<!-- who sat where -->
<room name="&site;" note="a &lt; b &#x41; 'c'">
  <player seat="1"><name>Ada &amp; Bob</name><stack>100</stack></player>
  <player seat="2"><name><![CDATA[<C>]]>&#233;</name><stack/></player>
  <table>&a;<b>bold</b> and <i>not</i> </table><?do it?>
</room>
<!-- end -->
)";

TEST(Markup, CursorFindsWhatIsThere) {
  CMarkup doc = Loaded(kPlayers);
  EXPECT_EQ(doc.Name(), L"room");
  EXPECT_EQ(doc.Data(), L"");
  EXPECT_EQ(doc.Attribute(L"note"), L"a < b A 'c'");
  EXPECT_EQ(doc.AttributeNames(), (CStringArray{L"name", L"note"}));
  EXPECT_FALSE(doc.Leave() || doc.Next() || doc.Previous() || doc.Enter(L"name"));
  std::vector<std::pair<CString, CString>> players;
  ASSERT_TRUE(doc.Enter(L"player"));
  do {
    players.emplace_back(doc.Attribute(L"seat"), doc.ChildData(L"name"));
  } while (doc.Next(L"player"));
  EXPECT_EQ(players,
            (std::vector<std::pair<CString, CString>>{{L"1", L"Ada & Bob"}, {L"2", L"<C>\u00E9"}}));
  EXPECT_TRUE(doc.Next() && doc.Name() == L"table" && !doc.Next());
  EXPECT_EQ(doc.Data(), L"&a; and  ") << "no entity is expanded, no file is read";
  EXPECT_TRUE(doc.Previous(L"player") && doc.Previous() && !doc.Previous());
  EXPECT_TRUE(doc.Find(L"stack") && doc.Find(L"stack") && !doc.Find(L"stack"));
  EXPECT_FALSE(doc.HasAttribute(L"seat"));
  EXPECT_TRUE(doc.Leave() && doc.HasAttribute(L"seat") && doc.Attribute(L"none").empty());
}

TEST(Markup, WhatWasNotChangedIsKeptToTheByte) {
  EXPECT_EQ(Loaded(kPlayers).Utf8(), kPlayers);
  const std::string lines = "<a>\r\n<b c=\"x\r\ty\"/>1\r2\r\n</a>\r\n";
  CMarkup doc = Loaded(lines);
  EXPECT_EQ(doc.Utf8(), lines);
  EXPECT_EQ(doc.Data(), L"\n1\n2\n");
  EXPECT_TRUE(doc.Enter());
  EXPECT_EQ(doc.Attribute(L"c"), L"x  y");
  EXPECT_EQ(Loaded("<a b='say \"&#34;hi' />").Utf8(), "<a b=\"say &quot;&#34;hi\"/>");
  EXPECT_EQ(Loaded("\xEF\xBB\xBF<a> </a>").Data(), L" ");
}

TEST(Markup, WhatIsPutInIsReadBack) {
  const CString odd = L"<&>\"' ]]> \u20AC\U0001F0A1 \t\n\r\n end \r";
  CMarkup doc;
  EXPECT_FALSE(doc.SetData(L"x") || doc.Remove() || doc.ToRoot() || doc.Next() || doc.Enter());
  EXPECT_EQ(doc.Text(), L"");
  ASSERT_TRUE(doc.AddChild(L"r\u00E9sum\u00E9", odd));
  EXPECT_TRUE(doc.SetAttribute(L"x:a", odd) && doc.SetAttribute(L"b", L"1"));
  EXPECT_TRUE(doc.SetChildData(L"first", L"1") && doc.SetChildData(L"first", L"2"));
  EXPECT_TRUE(doc.Enter() && doc.Add(L"third") && doc.Insert(L"second") && !doc.Next(L"first"));
  EXPECT_TRUE(doc.AddChild(L"gone") && doc.Remove() && doc.Name() == L"second");
  EXPECT_TRUE(doc.Leave() && doc.RemoveAttribute(L"b") && !doc.RemoveAttribute(L"b"));
  EXPECT_EQ(doc.ErrorText(), L"there is no attribute 'b'");
  CMarkup again;
  ASSERT_TRUE(again.LoadText(doc.Text())) << ToUtf8(again.ErrorText());
  EXPECT_EQ(Walk(again), Walk(doc));
  EXPECT_EQ(again.Data(), odd);
  EXPECT_EQ(again.Attribute(L"x:a"), odd);
  EXPECT_EQ(again.ChildData(L"first"), L"2");
  // Refused, with nothing changed.
  const CString before = doc.Text();
  for (const CString name : {L"", L"1", L"a b", L"a>", L"-", L"a\u00D7"}) {
    EXPECT_FALSE(doc.AddChild(name) || doc.SetAttribute(name, L"") || doc.SetChildData(name, L""));
  }
  for (const CString& text :
       {CString(1, L'\0'), CString(L"\x01"), CString(L"\uFFFE"), CString(1, wchar_t{0xD800})}) {
    EXPECT_FALSE(doc.SetData(text) || doc.SetAttribute(L"b", text) || doc.AddChild(L"c", text));
    EXPECT_NE(doc.ErrorText().find(L"XML cannot hold the character U+"), before.npos);
    EXPECT_FALSE(again.LoadText(L"\uFEFF<a>" + text + L"</a>"));
    EXPECT_EQ(again.ErrorColumn(), 4);
  }
  EXPECT_FALSE(doc.Add(L"second_root") || doc.Insert(L"second_root"));
  EXPECT_EQ(doc.Text(), before);
  // Two texts that meet must not become the end of a CDATA section.
  doc = Loaded("<a>]]<b/>&gt;]<b/>]<b/>>\r<b/>\n]<b/>]></a>");
  while (doc.Enter(L"b")) EXPECT_TRUE(doc.Remove());
  EXPECT_EQ(doc.Data(), L"]]>]]>\n\n]]>");
  EXPECT_EQ(Loaded(doc.Utf8()).Data(), doc.Data());
  doc = Loaded("<a>x\r<b/> <c/>\n</a>");
  while (doc.Enter()) EXPECT_TRUE(doc.Remove());
  EXPECT_EQ(doc.Data(), L"x\n\n");
  EXPECT_EQ(Loaded(doc.Utf8()).Data(), doc.Data());
  doc = Loaded("<a>x\r<b/>\r<b/>\n\nc</a>");
  while (doc.Enter()) EXPECT_TRUE(doc.Remove());
  EXPECT_EQ(doc.Data(), L"x\n\n\n\nc");
  EXPECT_EQ(Loaded(doc.Utf8()).Data(), doc.Data());
  doc = Loaded("<a>\n  <b/>\n  <c/>\n</a>");
  EXPECT_TRUE(doc.Enter(L"c") && doc.Remove());
  EXPECT_EQ(doc.Utf8(), "<a>\n  <b/>\n</a>");
}

TEST(Markup, IndentsWhatIsNoText) {
  CMarkup doc;
  doc.AddChild(L"a");
  doc.SetChildData(L"b", L"1");
  doc.AddChild(L"c");
  doc.AddChild(L"d");
  doc.Indent();
  const char* const expected =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n  <b>1</b>\n  <c>\n    <d/>\n  "
      "</c>\n</a>\n";
  EXPECT_EQ(doc.Utf8(), expected);
  doc.Indent();
  EXPECT_EQ(doc.Utf8(), expected);
  const std::string kept =
      "<a>\n  <p>x<b/> <i/></p>\n  <p xml:space=\"preserve\"> <q/></p>\n</a>\n";
  doc = Loaded(kept);
  doc.Indent();
  EXPECT_EQ(doc.Utf8(), kept);
}

TEST(Markup, FaultsAreNamedWithTheirPlace) {
  const struct {
    std::string text;
    int line, column;
    const wchar_t* said;
  } faults[] = {{"", 1, 1, L"there is no element"},
                {" <!-- x -->\n ", 2, 2, L"there is no element"},
                {"<a>\n<\u00E9 b='1'\n\u00E9\u00E9='2' b='3'/></a>", 3, 8, L"given twice"},
                {"<a/>\r\n<b/>", 2, 2, L"second root"},
                {"x<a/>", 1, 1, L"outside the root"},
                {"<a/>\rx", 1, 5, L"outside the root"},
                {"<a/><![CDATA[]]>", 1, 14, L"outside the root"},
                {"<a>\n</b>", 2, 3, L"an end tag is not that of the open element"},
                {"<a><b></a>", 1, 9, L"an end tag is not that"},
                {"<a", 1, 2, L"a start tag is not right"},
                {"<a b=1/>", 1, 6, L"an attribute is not right"},
                {"<a b='<'/>", 1, 7, L"has <"},
                {"<a b='&'/>", 1, 7, L"begins no reference"},
                {"<a>1 & 2</a>", 1, 6, L"begins no reference"},
                {"<a>&#0;</a>", 1, 4, L"begins no reference"},
                {"<a>&#x110000;</a>", 1, 4, L"begins no reference"},
                {"<a>&#99999999999999999999;</a>", 1, 4, L"begins no reference"},
                {"<a>&1;</a>", 1, 4, L"begins no reference"},
                {"<a>&undeclared;</a>", 1, 4, L"not declared"},
                {"<a>]]></a>", 1, 4, L"]]>"},
                {"<a><!-- -- --></a>", 1, 9, L"a comment has --"},
                {"<a><!-- ---></a>", 1, 9, L"ends in -"},
                {"<a>\u00D7</a><\u00D7/>", 1, 10, L""},
                {"<\u00D7/>", 1, 2, L"no name may have"},
                {" <?xml version='1.0'?><a/>", 1, 4, L"does not stand at the start"},
                {"<?XML version='1.0'?><a/>", 1, 3, L"begins <?xml version="},
                {"<?xml encoding='UTF-8'?><a/>", 1, 3, L"begins <?xml version="},
                {"<?xml version='abc'?><a/>", 1, 7, L"a value"},
                {"<?xml version='1.0' encoding='_'?><a/>", 1, 21, L"a value"},
                {"<?xml version='1.0' standalone='maybe'?><a/>", 1, 21, L"a value"},
                {"<?xml version='1.0' standalone='no' encoding='a'?><a/>", 1, 37, L"has only"},
                {"<a><?xml version='1.0'?></a>", 1, 9, L"declaration"},
                {"<a/><!DOCTYPE a>", 1, 15, L"wrong place"},
                {"<!DOCTYPEa><a/>", 1, 10, L"no name"},
                {"<!DOCTYPE><a/>", 1, 10, L"no name"},
                {"\uFEFF<a/><b/>", 1, 6, L"second root"},
                {"\uFEFF\uFEFF<a/>", 1, 1, L"outside the root"},
                {"<!DOCTYPE a [<!ENTITY", 1, 21, L"the DOCTYPE"},
                {"<a>\x01</a>", 1, 4, L"XML cannot hold the character U+0001"},
                {std::string("<a/>\0<b/>", 9), 1, 5, L"XML cannot hold the character U+0000"},
                {"<a>\n\xC3(</a>", 2, 1, L"not UTF-8"},
                {"<a>\xED\xA0\x80</a>", 1, 4, L"not UTF-8"}};
  CMarkup doc = Loaded("<kept/>");
  for (const auto& fault : faults) {
    EXPECT_FALSE(doc.LoadUtf8(fault.text)) << fault.text;
    EXPECT_NE(doc.ErrorText().find(fault.said), CString::npos) << ToUtf8(doc.ErrorText());
    EXPECT_EQ(std::pair(doc.ErrorLine(), doc.ErrorColumn()), std::pair(fault.line, fault.column))
        << fault.text << ": " << ToUtf8(doc.ErrorText());
    EXPECT_EQ(doc.Text(), L"<kept/>");
  }
}

TEST(Markup, FilesInEveryEncoding) {
  const ScratchFolder folder;
  const std::string path = folder / "in.xml";
  const std::u16string text = u"<?xml version='1.0' encoding='UTF-16'?><a>\u20AC\U0001F0A1</a>";
  std::string utf16, utf16_big;
  for (const char16_t unit : text) {
    utf16 += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    utf16_big += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
  }
  CMarkup doc;
  const auto load = [&](const std::string& bytes) {
    SetContent(path, bytes);
    return doc.Load(FromUtf8(path));
  };
  const CString expected = L"\u20AC\U0001F0A1";
  for (const std::string& bytes : {utf16, "\xFF\xFE" + utf16, utf16_big, "\xFE\xFF" + utf16_big}) {
    ASSERT_TRUE(load(bytes)) << ToUtf8(doc.ErrorText());
    EXPECT_EQ(doc.Data(), expected);
  }
  ASSERT_TRUE(load("<?xml version='1.0' encoding=\"Windows-1252\"?><a>\x80</a>"));
  EXPECT_EQ(doc.Utf8(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xE2\x82\xAC</a>");
  ASSERT_TRUE(load("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"));
  EXPECT_EQ(doc.Data(), L"\u00E9");
  for (const char* head : {"<?xml-stylesheet href='encoding.xsl' title='x'?>",
                           "<?xml version=\"1.0\" encoding=\"utf-8\"?>"}) {
    EXPECT_TRUE(load(std::string(head) + "<a/>")) << ToUtf8(doc.ErrorText());
    EXPECT_EQ(doc.Utf8(), std::string(head) + "<a/>");
  }
  EXPECT_FALSE(load("<?xml version='1.0' encoding='UTF-16'?><a/>"));
  EXPECT_EQ(doc.ErrorText(), L"its declaration says utf-16, but it is not written so");
  EXPECT_FALSE(load("<?xml version='1.0' encoding='KOI8-R'?><a/>"));
  EXPECT_NE(doc.ErrorText().find(L"'koi8-r' cannot be its encoding"), CString::npos);
  EXPECT_FALSE(load("\xFF\xFE\xFF\xFE" + utf16)) << "two marks";
  EXPECT_FALSE(load("\xFF\xFE<"));
  EXPECT_FALSE(load(std::string("\xFF\xFE<\0\n\0\0\xD8<\0", 10)));
  EXPECT_EQ(doc.ErrorText(), L"line 2, column 1: the text is not UTF-16");
}

TEST(Markup, SavesWholeFilesOnly) {
  const ScratchFolder folder;
  const std::string path = folder / "out.xml";
  const CString name = FromUtf8(path);
  CMarkup doc;
  EXPECT_FALSE(doc.Save(name)) << "it would not load again";
  doc = Loaded(kPlayers);
  EXPECT_TRUE(doc.Save(name));
  EXPECT_EQ(ContentOf(path), kPlayers);
  doc.SetData(CString(100000, L'x'));
  {
    const FullDisk full(1000);
    EXPECT_FALSE(doc.Save(name));
  }
  EXPECT_EQ(doc.ErrorText(), L"cannot write '" + name + L"': File too large");
  EXPECT_EQ(ContentOf(path), kPlayers);
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"out.xml"});
  EXPECT_FALSE(doc.Save(name + L"/x"));
  EXPECT_FALSE(doc.Load(name + L"2"));
  EXPECT_EQ(doc.ErrorText(), L"cannot read '" + name + L"2': No such file or directory");
  EXPECT_FALSE(doc.Load(FromUtf8(folder / "")));
  EXPECT_EQ(doc.ErrorLine(), 0);
}

TEST(Markup, CopiesAreDocumentsOfTheirOwn) {
  CMarkup first = Loaded("<a><b/><c>1</c></a>");
  first.Find(L"c");
  CMarkup second = first;
  EXPECT_EQ(second.Data(), L"1");
  second.SetData(L"2");
  EXPECT_EQ(first.Data(), L"1");
  const CMarkup third = std::move(first);
  EXPECT_EQ(third.Text(), L"<a><b/><c>1</c></a>");
  first = second;
  EXPECT_EQ(first.Name() + first.Data(), L"c2");
  first = CMarkup(std::move(second));
  EXPECT_TRUE(first.Remove() && first.Remove() && !first.Remove());
  EXPECT_TRUE(first.Add(L"new") && CMarkup(first).Name() == L"new");
}

// The parser's memory fails for what is larger than its pages.
TEST(Markup, WithoutMemoryNothingIsChanged) {
  const CString large(100'000, L'x');
  CMarkup doc = Loaded("<a b=''>text<c/></a>"), empty;
  const CMarkup originals[] = {Loaded("<a><b/>" + ToUtf8(large) + "</a>"),
                               Loaded("<a b='" + ToUtf8(large) + "'/>"),
                               Loaded("<a>" + Repeated("<b c='1'/>", 5000) + "</a>")};
  pugi::set_memory_management_functions([](std::size_t) -> void* { return nullptr; }, std::free);
  EXPECT_THROW(doc.SetData(large), std::bad_alloc);
  EXPECT_THROW(doc.SetChildData(L"c", large), std::bad_alloc);
  EXPECT_THROW(doc.SetChildData(L"d", large), std::bad_alloc);
  EXPECT_THROW(doc.SetAttribute(L"b", large), std::bad_alloc);
  EXPECT_THROW(doc.SetAttribute(L"c", large), std::bad_alloc);
  EXPECT_THROW(doc.SetAttribute(large, L""), std::bad_alloc);
  EXPECT_THROW(doc.AddChild(L"d", large), std::bad_alloc);
  EXPECT_THROW(doc.AddChild(large), std::bad_alloc);
  EXPECT_THROW(empty.AddChild(L"d", large), std::bad_alloc);
  for (const CMarkup& original : originals) EXPECT_THROW(CMarkup{original}, std::bad_alloc);
  EXPECT_THROW(empty.LoadUtf8("<a/>"), std::bad_alloc);
  pugi::set_memory_management_functions(std::malloc, std::free);
  EXPECT_EQ(doc.Text(), L"<a b=\"\">text<c/></a>");
  EXPECT_EQ(empty.Text(), L"");
  for (const CMarkup& original : originals) EXPECT_EQ(CMarkup(original).Text(), original.Text());
}

// More levels than a stack has room for, as many neighbours, many attributes, and entities that
// would grow to gigabytes: none needs a deep stack or quadratic time.
TEST(Markup, HugeDocuments) {
  constexpr int kMany = 300000;
  std::string flat = "<a>";
  CMarkup doc = Loaded(Repeated("<a>", kMany) + Repeated("</a>", kMany));
  CMarkup copy = doc;
  copy.Indent();
  int levels = 1;
  while (copy.Enter()) ++levels;
  EXPECT_EQ(levels, kMany);
  EXPECT_TRUE(copy.AddChild(L"b"));
  doc.Enter();
  EXPECT_TRUE(doc.Remove());
  EXPECT_EQ(doc.Text(), L"<a/>");

  for (int i = 0; i < kMany; ++i) flat += "<b c='" + std::to_string(i) + "'/>\n";
  doc = Loaded(flat + "</a>");
  int children = doc.Enter();
  while (doc.Next(L"b")) ++children;
  EXPECT_EQ(children, kMany);
  EXPECT_EQ(doc.Attribute(L"c"), std::to_wstring(kMany - 1));
  // Every second one, then the rest, whose texts gather.
  doc.ToRoot();
  bool more = doc.Enter();
  while (more) more = doc.RemoveAndNext(L"b") && doc.Next();
  EXPECT_EQ(doc.Attribute(L"c"), std::to_wstring(kMany - 1));
  doc = Loaded("<a>" + Repeated("x<b/>", kMany) + "</a>");
  EXPECT_TRUE(doc.Enter());
  while (doc.RemoveAndNext()) {
  }
  EXPECT_EQ(doc.Name() + doc.Data(), L"a" + CString(kMany, L'x'));
  std::string wide = "<a";
  for (int i = 0; i < kMany / 5; ++i) wide += " c" + std::to_string(i) + "=''";
  EXPECT_FALSE(doc.LoadUtf8(wide + " c77=''/>"));

  std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
  for (int i = 1; i < 40; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    bomb += "<!ENTITY e" + std::to_string(i) + " '" + inner + inner + "'>";
  }
  EXPECT_EQ(Loaded(bomb + "]><a>&e39;</a>").Data(), L"&e39;");
}

}  // namespace
}  // namespace pokermath
