// What is shown of a connect string, and of what a driver says about it.

#include "support/odbc/connect_text.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "pokermath/messages.h"
#include "pokermath/odbc.h"

namespace pokermath {
namespace {

TEST(OdbcConnectText, PasswordsAreStars) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"", L""},
      {L"DSN=x", L"DSN=x"},
      {L"DSN=x;pWd=a;Uid=u", L"DSN=x;pWd=***;Uid=u"},
      {L" PASSWORD = a b ;x=1", L" PASSWORD =***;***"},
      {L"PWD={a;b}}c};x=1", L"PWD=***;x=1"},
      {L"PWD={never closed;x=1", L"PWD=***"},
      {L"a={PWD=;};Pwd=", L"a=***;Pwd=***"},
      {L"pqopt={host=h password=p};x", L"pqopt=***;***"},
      {L"sslpassword=p;;=;Pwd=q=r", L"sslpassword=***;;=;Pwd=***"},
      {L"Description=my pwd;x=1", L"Description=***;***"},
  };
  for (const auto& [connect, shown] : cases) EXPECT_EQ(WithoutPasswords(connect), shown);
  // What a known keyword does not have, and what is a secret however it looks.
  for (const CString part :
       {L"Uid=me sesame77", L"Server=h sesame77", L"Host=h sesame77", L"Server=me:7777777",
        L"Server=[me:sesame77]", L"DBQ=scott/sesame77", L"PIN=1", L"Key=0", L"ApiKey2=yes"}) {
    EXPECT_EQ(WithoutPasswords(part), part.substr(0, part.find(L'=') + 1) + L"***");
  }
  EXPECT_EQ(WithoutPasswordsOf(L"PIN=12", L"no pin: 12"), L"no pin: ***");
  EXPECT_EQ(WithoutPasswordsOf(L"PWD={se}}cret}", L"near se}cret: {se}}cret}"), L"near ***: ***");
  EXPECT_EQ(WithoutPasswordsOf(L"PWD=a", L"a table 'a'"), L"*** table '***'");
  EXPECT_EQ(WithoutPasswordsOf(L"PWD={  }", L"a  b"), L"a  b");
  // In options for the server.
  const CString options = L"pqopt={host=h PassWord = 'it\\'s it' pwd=in\\ ner}}};x";
  EXPECT_EQ(WithoutPasswords(options), L"pqopt=***;***");
  EXPECT_EQ(WithoutPasswordsOf(options, L"it's it, it\\'s it, in ner}, in\\ ner"),
            L"***, ***, ***, ***");
  EXPECT_EQ(WithoutPasswordsOf(L"pqopt={password=se;cr}}et}", L"se;cr}et"), L"***");
  EXPECT_EQ(WithoutPasswordsOf(L"PWD=o'brien", L"'o''BRIEN' E'o\\'brien'"), L"'***' E'***'");
  EXPECT_EQ(WithoutPasswordsOf(L"a={;PWD =secret", L"a secret"), L"a ***");
}

TEST(OdbcConnectText, PiecesOfSecrets) {
  EXPECT_EQ(WithoutPasswordsOf(L"DSN=pg://me:q7@host", L"q7, me:q7@host"), L"***, me:***@host");
  EXPECT_EQ(WithoutPasswordsOf(L"a=me:p@s:s@host", L"p@s:sx, p@s:s"), L"***x, ***");
  EXPECT_EQ(WithoutPasswordsOf(L"a=me:s%C3%A9%40me@h", L"sé@me s%c3%a9%40me %"), L"*** *** %");
  EXPECT_EQ(WithoutPasswordsOf(L"ConnSettings=ALTER USER u PASSWORD 'a b c'", L"xa b cx"),
            L"x***x");
  EXPECT_EQ(WithoutPasswordsOf(L"a={user=u password=q7 host=h}", L"q7 u h user q78"),
            L"*** u *** user q78");
}

TEST(OdbcConnectText, WhatIsNoSecretStaysReadable) {
  const wchar_t* const all[] = {
      L"Driver={SQLite3};Database=/home/me/my hands/a-b_1.db;Timeout=200;NoTXN=1",
      L"driver={PostgreSQL Unicode};SERVER=db.example.com;Port=5432;Uid=me;SSLmode=verify-full",
      L"Driver={ODBC Driver 18};Server=.\\SQLEXPRESS,1433;User ID=DOMAIN\\me;Trusted_Connection=no",
      L"Initial Catalog=poker;Encrypt=yes",
      L"DSN=poker;UID=me@example.com;",
      L"Dbq=C:\\data\\hands (1).mdb",
      L"Database=:memory:",
      L"Server=tcp:myhost.example.com,1433;Option=3;App=my hands;ReadOnly=1;Client_Charset=UTF-8",
      L"Server=TCP:[fe80::1]:5432;Host=[::1];MaxVarcharSize=255;UseDeclareFetch=1;TDS_Version=7.4"};
  for (const wchar_t* connect : all) {
    EXPECT_EQ(WithoutPasswords(connect), connect);
    const CString said = CString(L"no database 'poker', 5432, me, hands at ") + connect;
    EXPECT_EQ(WithoutPasswordsOf(connect + CString(L";PWD=sesame"), said), said);
  }
  EXPECT_EQ(WithoutPasswordsOf(L"Unknown=3;Other={12}", L"line 3, 12"), L"line 3, 12");
  const CString asked = L"FATAL: password authentication failed for user \"me\" on server";
  EXPECT_EQ(WithoutPasswordsOf(L"UID=me;ConnSettings=ALTER USER me PASSWORD 'x'", asked), asked);
  EXPECT_EQ(WithoutPasswordsInWord(L"AhKd;7s7c"), L"AhKd;7s7c");
  EXPECT_EQ(WithoutPasswordsInWord(L"--bord=2c3d4h"), L"--bord=2c3d4h");
  EXPECT_EQ(WithoutPasswordsInWord(L"me:sesame@host"), L"***");
  EXPECT_EQ(WithoutPasswordsInWord(L"--db=Driver=x;Rest=sesame"), L"--db=***;***");
  EXPECT_EQ(WithoutPasswordsInWord(L"ApiKey=sesame"), L"ApiKey=***");
}

// Every way in which people were seen to write a secret, with every keyword and at every place.
class OdbcSecrets : public testing::Test {
 protected:
  OdbcSecrets() {
    // The drivers' helper keeps what it has read of its settings for good; if a driver took it
    // along when it is unloaded, that would be a leak.
    dlopen("libodbcinst.so.2", RTLD_NOW | RTLD_NODELETE);
    SetMessageHandler([this](const CString& text) { messages_.push_back(text); });
    const wchar_t* const secret_keywords[] = {
        L"PWD",         L"Pwd1",           L"PASSWORD",
        L" PASSWORD2 ", L"passwd",         L"Pass",
        L"Passcode",    L"Passphrase",     L"SSLKeyPassphrase",
        L"sslpassword", L"KeyStoreSecret", L"AccessToken",
        L"Token",       L"ClientSecret",   L"ApiKey",
        L"PIN",         L"Client Secret",  L"ConnSettings",
        L"pqopt",       L"Whatever"};
    const wchar_t* const known_keywords[] = {L"Server", L"Database", L"Uid", L"DSN", L"Host"};
    // A secret is $.
    const wchar_t* const plain[] = {L"$", L"{$}", L" {a}}$} ", L"{$", L"\"$", L"a;$=b"};
    const wchar_t* const nested[] = {L"\"a;$\"",
                                     L"'a;$;b'",
                                     L"{a;$}",
                                     L"a;$",
                                     L"user:$@host",
                                     L"pg://user:$@host/db?x=1",
                                     L"jdbc:pg://user:a:$@host",
                                     L"{host=h password=$}",
                                     L"host=h password = '$' port=1",
                                     L"{SET x=1; ALTER USER me PASSWORD 'a;$'}",
                                     L"ALTER USER me PASSWORD '$;b' VALID"};
    for (const wchar_t* keyword : secret_keywords) {
      for (const wchar_t* form : plain) Add(keyword, form);
      for (const wchar_t* form : nested) Add(keyword, form);
    }
    for (const wchar_t* keyword : known_keywords) {
      for (const wchar_t* form : nested) Add(keyword, form);
    }
    Add(L"pg://user:$@host?a", L"1");
  }
  ~OdbcSecrets() override { SetMessageHandler({}); }

  void Add(const CString& keyword, const CString& form) {
    CString part = keyword + L"=" + form;
    part.replace(part.find(L'$'), 1, secret_);
    parts_.push_back(part);
  }
  void ExpectNone(const CString& text, const CString& connect) const {
    EXPECT_EQ(text.find(secret_), CString::npos) << ToUtf8(connect) << "\n" << ToUtf8(text);
  }

  const CString secret_ = L"seSame7";
  std::vector<CString> parts_;
  std::vector<CString> messages_;
};

TEST_F(OdbcSecrets, AreInNoText) {
  std::size_t count = 0;
  for (const CString& part : parts_) {
    for (const CString& connect :
         {part, L"Driver=x;" + part, part + L";Uid=me", L"Driver={x};" + part + L";Server=h;"}) {
      ++count;
      const CString shown = WithoutPasswords(connect);
      ExpectNone(shown, connect);
      EXPECT_EQ(WithoutPasswords(shown), shown);
      ExpectNone(WithoutPasswordsInWord(connect), connect);
      // A driver repeats it, or what it takes for a keyword, a value or a word.
      for (const wchar_t* ends :
           {L"", L";", L";=", L" =", L"'\"", L":;@", L";={}\"'", L" ;=:@'\"{}/"}) {
        CString said = L"no option:";
        for (std::size_t at = 0; at < connect.size(); ++at) {
          const std::size_t end = std::min(connect.find_first_of(ends, at), connect.size());
          said += L" <" + connect.substr(at, end - at) + L">";
          at = end;
        }
        ExpectNone(WithoutPasswordsOf(connect, said), connect);
      }
    }
  }
  EXPECT_GE(count, 546u);
}

TEST_F(OdbcSecrets, AreInNoMessage) {
  for (const CString& part : parts_) {
    const CString sql = L"SELECT '" + secret_ + L"' FROM none";
    messages_.clear();
    CDatabase* db = nullptr;
    CODBCRecordset* rs = nullptr;
    const CString file = L"Driver=SQLite3;Database=:memory:;" + part;
    EXPECT_FALSE(OpenODBC(L"Driver=none;" + part, db));
    EXPECT_FALSE(OpenODBC(file, db, rs, sql, true));
    EXPECT_FALSE(ExecuteSQL(file, secret_ + L" = '" + secret_ + L"'"));
    EXPECT_EQ(messages_.size(), 3u) << ToUtf8(part);
    for (const CString& text : messages_) ExpectNone(text, part);
  }
}

}  // namespace
}  // namespace pokermath
