// An XML document: made, saved, loaded, walked through and changed.

#include <pokermath/markup.h>

#include <clocale>
#include <cstdio>

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");  // wide text is printed as UTF-8
  CMarkup made;
  made.AddChild(L"players");
  for (const wchar_t* name : {L"Zo\u00EB", L"Bob & Co"}) {
    if (!made.AddChild(L"player") || !made.SetAttribute(L"name", name) ||
        !made.SetChildData(L"stack", L"1500") || !made.Leave()) {
      return std::fprintf(stderr, "%ls\n", made.ErrorText().c_str()), 1;
    }
  }
  made.Indent();
  if (!made.Save(L"players.xml")) return std::fprintf(stderr, "%ls\n", made.ErrorText().c_str()), 1;

  CMarkup doc;
  if (!doc.Load(L"players.xml")) return std::fprintf(stderr, "%ls\n", doc.ErrorText().c_str()), 1;
  if (doc.Enter(L"player")) {
    do {
      std::printf("%ls has %ls\n", doc.Attribute(L"name").c_str(), doc.ChildData(L"stack").c_str());
    } while (doc.Next(L"player"));
    doc.SetChildData(L"stack", L"900");  // the last one's
  }
  std::printf("%s", doc.Utf8().c_str());

  if (!doc.LoadText(L"<players><player></players>")) {
    std::printf("\n%ls\n", doc.ErrorText().c_str());
  }
}
