// PwLocale: a locale as the toolkit passes it around, convertible to its numeric id.
//
//   PwLocale german = PwLocale::fromTag(u"de-DE");
//   int id = german;                 // 1031
//   wstring tag = german.tag();      // u"de-DE"
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

class PwLocale {
  public:
    /// The locale of the process's environment (see LodeUtil::ProcessLocaleId).
    PwLocale();
    /// The locale with numeric id `id`; an unknown id makes an invalid locale.
    explicit PwLocale(int id) : m_id(id) {}

    /// The locale named by `tag` ("de-DE", "de_DE.UTF-8"); invalid when the tag is unknown.
    static PwLocale fromTag(const wstring& tag);

    /// The numeric id; 0 for an invalid locale.
    operator int() const { return m_id; }
    int id() const { return m_id; }
    /// "language-REGION"; empty for an invalid locale.
    wstring tag() const;
    bool isValid() const { return !tag().empty(); }

    bool operator==(const PwLocale& other) const { return m_id == other.m_id; }

  private:
    int m_id;
};
