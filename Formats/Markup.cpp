#include "Formats/Markup.h"

#include "Formats/Text.h"

namespace Formats {

namespace {

using Element = CueBuilder::Element;

struct Tag {
  bool isEnd = false;
  UString name;
  std::vector<std::u16string_view> classes;
  std::u16string_view annotation;
};

bool IsLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

Tag ParseTag(std::u16string_view inside, Dialect dialect) {
  Tag tag;
  if (inside.starts_with(u'/')) {
    tag.isEnd = true;
    inside.remove_prefix(1);
  }
  std::size_t end = 0;
  while (end < inside.size() && !IsSpace(inside[end]) && inside[end] != u'\n')
    ++end;
  std::u16string_view head = inside.substr(0, end);
  tag.annotation = inside.substr(end);
  while (!tag.annotation.empty() && (IsSpace(tag.annotation.front()) || tag.annotation.front() == u'\n'))
    tag.annotation.remove_prefix(1);
  if (head.ends_with(u'/'))
    head.remove_suffix(1);
  std::size_t dot = head.find(u'.');
  tag.name = UString(head.substr(0, dot));
  while (dot != std::u16string_view::npos) {
    head = head.substr(dot + 1);
    dot = head.find(u'.');
    if (const std::u16string_view name = head.substr(0, dot); !name.empty())
      tag.classes.push_back(name);
  }
  if (dialect == Dialect::SubRip)
    tag.name = LowerASCII(tag.name);
  return tag;
}

std::optional<Element> FindElement(const UString& name, Dialect dialect) {
  if (name == u"b")
    return Element::Bold;
  if (name == u"i")
    return Element::Italic;
  if (name == u"u")
    return Element::Underline;
  if (name == u"font")
    return Element::Font;
  if (dialect == Dialect::SubRip) {
    if (name == u"bold" || name == u"strong")
      return Element::Bold;
    if (name == u"italic" || name == u"em")
      return Element::Italic;
    if (name == u"underline")
      return Element::Underline;
    return std::nullopt;
  }
  if (name == u"c")
    return Element::Class;
  if (name == u"v")
    return Element::Voice;
  if (name == u"lang")
    return Element::Language;
  if (name == u"ruby")
    return Element::Ruby;
  if (name == u"rt")
    return Element::RubyText;
  return std::nullopt;
}

std::optional<CaptioningColor> FindCueColor(std::u16string_view name) {
  for (const auto& [known, color] : GetCueColors()) {
    if (known == name)
      return color;
  }
  return std::nullopt;
}

class Parser {
 public:
  Parser(std::u16string_view text, Dialect dialect, CueBuilder& builder)
      : mText(text), mDialect(dialect), mBuilder(builder) {}

  std::optional<int> Run() {
    while (mAt < mText.size()) {
      const std::size_t next = std::min(mText.find_first_of(u"<&{", mAt), mText.size());
      mBuilder.Append(mText.substr(mAt, next - mAt));
      mAt = next;
      if (mAt == mText.size())
        break;
      const bool taken = mText[mAt] == u'<' ? TakeTag() : mText[mAt] == u'&' ? TakeEntity() : TakeOverride();
      if (!taken)
        mBuilder.Append(mText.substr(mAt++, 1));
    }
    // An element that is never closed holds to the end.
    if (mBuilder.IsOpen(Element::RubyText))
      CloseRubyText();
    return mAnchor;
  }

 private:
  bool TakeEntity() {
    const Entity entity = ParseEntity(mText.substr(mAt, 12));
    if (entity.length == 0)
      return false;
    mBuilder.Append(entity.text);
    mAt += entity.length;
    return true;
  }

  bool TakeOverride() {
    if (mDialect != Dialect::SubRip || mAt + 1 >= mText.size() || mText[mAt + 1] != u'\\')
      return false;
    const std::size_t end = mText.find_first_of(u"{}\n", mAt + 1);
    if (end == std::u16string_view::npos || mText[end] != u'}')
      return false;
    bool isDrawing = false;
    ApplyOverrides(mText.substr(mAt + 1, end - mAt - 1), TextSpanAttributes(), mBuilder, mAnchor, isDrawing);
    mAt = end + 1;
    return true;
  }

  bool TakeTag() {
    const char16_t next = mAt + 1 < mText.size() ? mText[mAt + 1] : u' ';
    if (mDialect == Dialect::SubRip) {
      const bool isTag = IsLetter(next) || (next == u'/' && mAt + 2 < mText.size() && IsLetter(mText[mAt + 2]));
      const std::size_t end = isTag ? mText.find_first_of(u"<>", mAt + 1) : std::u16string_view::npos;
      if (end == std::u16string_view::npos || mText[end] != u'>')
        return false;
      Handle(mText.substr(mAt + 1, end - mAt - 1));
      mAt = end + 1;
      return true;
    }
    if (IsSpace(next) || next == u'\n' || next == u'=')
      return false;
    const std::size_t end = mText.find(u'>', mAt + 1);
    if (end == std::u16string_view::npos) {
      mBuilder.Lose(Say("$$$/Vidra/Formats/LossUnfinishedTag=the unfinished tag \"{0}\"", {Quote(mText.substr(mAt))}));
      mAt = mText.size();
      return true;
    }
    Handle(mText.substr(mAt + 1, end - mAt - 1));
    mAt = end + 1;
    return true;
  }

  void Handle(std::u16string_view inside) {
    if (inside.empty())
      return;
    if (mDialect == Dialect::WebVTT && IsDigit(inside.front())) {
      mBuilder.Lose(Say("$$$/Vidra/Formats/LossTimes=the times inside the text"));
      return;
    }
    const Tag tag = ParseTag(inside, mDialect);
    const std::optional<Element> element = FindElement(tag.name, mDialect);
    if (tag.isEnd) {
      End(element);
    } else if (element) {
      Start(*element, tag);
    } else if (tag.name == u"br") {
      mBuilder.Append(u"\n");
    } else {
      mBuilder.Lose(Say("$$$/Vidra/Formats/LossTag=the tag \"{0}\"", {"<" + Quote(inside) + ">"}));
    }
  }

  void End(std::optional<Element> element) {
    if (!element)
      return;
    if (*element == Element::RubyText || *element == Element::Ruby) {
      if (mBuilder.IsOpen(Element::RubyText))
        CloseRubyText();
      if (*element == Element::RubyText)
        return;
    }
    mBuilder.Close(*element);
  }

  void CloseRubyText() {
    while (mBuilder.Close(Element::RubyText)) {
    }
    mBuilder.Append(u")");
  }

  void Start(Element element, const Tag& tag) {
    std::optional<CaptioningColor> text;
    std::optional<CaptioningColor> background;
    for (const std::u16string_view name : tag.classes) {
      const bool isBackground = name.starts_with(u"bg_");
      const std::optional<CaptioningColor> color = FindCueColor(isBackground ? name.substr(3) : name);
      if (!color)
        mBuilder.Lose(Say("$$$/Vidra/Formats/LossClass=the class \"{0}\"", {Quote(name)}));
      else
        (isBackground ? background : text) = color;
    }
    if (element == Element::Font)
      text = ReadFont(tag.annotation);
    if (element == Element::Voice && !tag.annotation.empty())
      mBuilder.Lose(Say("$$$/Vidra/Formats/LossVoice=the speaker's name \"{0}\"", {Quote(tag.annotation)}));
    if (element == Element::Language)
      mBuilder.Lose(Say("$$$/Vidra/Formats/LossLanguage=the language \"{0}\"", {Quote(tag.annotation)}));
    if (element == Element::Ruby)
      mBuilder.Lose(Say("$$$/Vidra/Formats/LossRuby=the place of ruby text (now in brackets)"));
    const bool isFirstRubyText = element == Element::RubyText && !mBuilder.IsOpen(Element::RubyText);
    mBuilder.Open(element, text, background);
    if (isFirstRubyText)
      mBuilder.Append(u"(");
  }

  // The colour of a font tag; its other attributes are lost.
  std::optional<CaptioningColor> ReadFont(std::u16string_view rest) {
    std::optional<CaptioningColor> color;
    while (!rest.empty()) {
      const std::size_t equals = rest.find(u'=');
      if (equals == std::u16string_view::npos)
        break;
      const UString name = LowerASCII(Trim(rest.substr(0, equals)));
      rest.remove_prefix(equals + 1);
      rest = rest.substr(std::min(rest.find_first_not_of(u" \t\n"), rest.size()));
      std::size_t end = 0;
      std::u16string_view value;
      if (!rest.empty() && (rest.front() == u'"' || rest.front() == u'\'')) {
        end = std::min(rest.find(rest.front(), 1), rest.size());
        value = rest.substr(1, end - 1);
      } else {
        end = std::min(rest.find_first_of(u" \t\n"), rest.size());
        value = rest.substr(0, end);
      }
      rest = rest.substr(std::min(end + 1, rest.size()));
      const std::optional<CaptioningColor> parsed = name == u"color" ? ParseColor(value) : std::nullopt;
      if (parsed)
        color = parsed;
      else
        mBuilder.Lose(Say("$$$/Vidra/Formats/LossFont=the font's {0} \"{1}\"", {Quote(name), Quote(value)}));
    }
    return color;
  }

  std::u16string_view mText;
  Dialect mDialect;
  CueBuilder& mBuilder;
  std::size_t mAt = 0;
  std::optional<int> mAnchor;
};

} // namespace

std::optional<int> AppendMarkup(std::u16string_view text, Dialect dialect, CueBuilder& builder) {
  return Parser(text, dialect, builder).Run();
}

} // namespace Formats
