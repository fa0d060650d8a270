#include "tools/automation_doc/AutomationDocument.h"

#include <stdexcept>

namespace qm::docs {

namespace {

std::string FormatCode(const std::string& text) { return '`' + text + '`'; }

/// Returns a link to the section of a type.
std::string LinkTo(const std::string& name) {
  std::string anchor;
  for (const char c : name) {
    anchor += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return '[' + name + "](#" + anchor + ')';
}

/// Breaks a paragraph into lines.
std::string WrapParagraph(const std::string& text) {
  constexpr size_t kWidth = 120;
  std::string lines;
  size_t begin = 0;
  while (text.size() - begin > kWidth) {
    size_t end = text.rfind(' ', begin + kWidth);
    if (end == std::string::npos || end <= begin) {
      end = text.find(' ', begin + kWidth);
    }
    if (end == std::string::npos) {
      break;
    }
    lines += text.substr(begin, end - begin) + '\n';
    begin = end + 1;
  }
  return lines + text.substr(begin) + "\n\n";
}

/// Keeps Markdown from reading "<NAME>" as a tag.
std::string EscapeTags(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    escaped += c == '<' ? std::string("\\<") : std::string(1, c);
  }
  return escaped;
}

std::string FormatExample(const Examples::Example& example) {
  return "    " + example.line + "\n\n";
}

std::string FormatSlot(const MemberDescription& member) {
  return "slot " + std::to_string(member.slot) + ", DISPID " + std::to_string(member.id);
}

/// Returns the signatures, help and errors of a member, without a heading.
std::string FormatMember(const MemberDescription& member, bool isCppOnly) {
  std::string text;
  if (isCppOnly) {
    text = WrapParagraph(FormatCode(member.declaration) + ", " + FormatSlot(member) + "; C++ only");
  } else {
    text = FormatCode(member.signature) + "  \n" +
           WrapParagraph(FormatCode(member.declaration) + ", " + FormatSlot(member));
  }
  text += WrapParagraph(EscapeTags(member.help));
  if (!member.errors.empty()) {
    text += WrapParagraph("Errors: " + member.errors);
  }
  return text;
}

/// Returns a member that scripts can see with its heading and example. Throws std::runtime_error if
/// something is missing.
std::string FormatDescribedMember(const InterfaceDescription& description,
                                  const MemberDescription& member, Examples& examples) {
  const std::string name = description.name + '.' + member.name;
  const Examples::Example& example = examples.Take(name);
  if (member.hasTypedOut && !example.isCpp) {
    throw std::runtime_error("scripts cannot call " + name + ": the example must be C++");
  }
  return "### " + name + "\n\n" + FormatMember(member, example.isCpp) + FormatExample(example);
}

std::string FormatContents(const std::vector<InterfaceDescription>& interfaces) {
  std::string text;
  for (const InterfaceDescription& description : interfaces) {
    if (!description.IsCollection()) {
      text += "  - " + LinkTo(description.name) + '\n';
    }
  }
  return text;
}

std::string FormatClasses(const std::vector<ClassDescription>& classes, Examples& examples) {
  std::string text;
  for (const ClassDescription& description : classes) {
    text += "### " + description.name + "\n\n";
    text += WrapParagraph("ProgID " + FormatCode(description.programId) + ", class " +
                          FormatCode(description.guid) + ", interface " +
                          LinkTo(description.interfaceName));
    text += WrapParagraph(description.help);
    text += FormatExample(examples.Take(description.name));
  }
  return text;
}

/// Replaces the type of a collection's elements in `text` by the word "Element".
std::string GeneralizeElementType(std::string text, const std::string& elementType) {
  for (size_t at = 0; (at = text.find(elementType, at)) != std::string::npos;) {
    text.replace(at, elementType.size(), "Element");
  }
  return text;
}

/// Returns whether a collection begins with the members of another one.
bool ExtendsMembers(const InterfaceDescription& description, const InterfaceDescription& pattern) {
  if (description.members.size() < pattern.members.size() || description.base != pattern.base) {
    return false;
  }
  const std::string& element = description.Find("Item")->resultType;
  const std::string& elementOfPattern = pattern.Find("Item")->resultType;
  for (size_t i = 0; i < pattern.members.size(); ++i) {
    if (GeneralizeElementType(FormatMember(description.members[i], false), element) !=
        GeneralizeElementType(FormatMember(pattern.members[i], false), elementOfPattern)) {
      return false;
    }
  }
  return true;
}

std::string FormatCollections(const std::vector<InterfaceDescription>& interfaces,
                              Examples& examples) {
  const InterfaceDescription* pattern = nullptr;
  std::string list;
  for (const InterfaceDescription& description : interfaces) {
    if (!description.IsCollection()) {
      continue;
    }
    if (!pattern) {
      pattern = &description;
    } else if (!ExtendsMembers(description, *pattern)) {
      throw std::runtime_error(description.name + " is no collection like the others");
    }
    list += "### " + description.name + "\n\n" +
            WrapParagraph(FormatCode(description.guid) + ", elements " +
                          LinkTo(description.Find("Item")->resultType) + ". " + description.help) +
            FormatExample(examples.Take(description.name));
    for (size_t i = pattern->members.size(); i < description.members.size(); ++i) {
      list += FormatDescribedMember(description, description.members[i], examples);
    }
  }
  if (!pattern) {
    throw std::runtime_error("there are no collections");
  }

  std::string text;
  for (const MemberDescription& member : pattern->members) {
    const Examples::Example& example = examples.Take("Collection." + member.name);
    text += "### Collection." + member.name + "\n\n" +
            GeneralizeElementType(FormatMember(member, example.isCpp),
                                  pattern->Find("Item")->resultType) +
            FormatExample(example);
  }
  return text + list;
}

std::string FormatInterface(const InterfaceDescription& description, Examples& examples) {
  std::string text = "## " + description.name + "\n\n";
  text += WrapParagraph(
      FormatCode(description.guid) + ", derived from " +
      (description.base == "IDispatch" ? description.base : LinkTo(description.base)));
  text += WrapParagraph(description.help);
  if (!description.errors.empty()) {
    text += WrapParagraph("Errors of its members: " + description.errors);
  }

  std::string reserved;
  for (const MemberDescription& member : description.members) {
    if (description.errors.empty() && member.errors.empty()) {
      throw std::runtime_error("nothing tells the errors of " + description.name + '.' +
                               member.name);
    }
    if (member.isHidden) {
      reserved += "- " + FormatCode(member.declaration) + ", " + FormatSlot(member) + ". " +
                  member.help + '\n';
      continue;
    }
    text += FormatDescribedMember(description, member, examples);
  }
  return reserved.empty() ? text : text + "Reserved:\n\n" + reserved + '\n';
}

std::string FormatInterfaces(const std::vector<InterfaceDescription>& interfaces,
                             Examples& examples) {
  std::string text;
  for (const InterfaceDescription& description : interfaces) {
    if (!description.IsCollection()) {
      text += FormatInterface(description, examples);
    }
  }
  return text;
}

/// Replaces the line `place` of the document by `text`.
void FillPlaceholder(std::string& document, const std::string& place, const std::string& text) {
  const std::string line = '\n' + place + '\n';
  const size_t at = document.find(line);
  if (at == std::string::npos) {
    throw std::runtime_error("the frame has no line " + place);
  }
  // The empty lines at the end of `text` are dropped.
  const size_t end = text.find_last_not_of('\n');
  document.replace(at + 1, line.size() - 1, text.substr(0, end + 1) + '\n');
}

}  // namespace

std::string MakeAutomationDocument(const std::string& frame,
                                   const std::vector<ClassDescription>& classes,
                                   const std::vector<InterfaceDescription>& interfaces,
                                   Examples examples) {
  std::string document = frame;
  FillPlaceholder(document, "@CONTENTS@", FormatContents(interfaces));
  FillPlaceholder(document, "@CLASSES@", FormatClasses(classes, examples));
  FillPlaceholder(document, "@COLLECTIONS@", FormatCollections(interfaces, examples));
  FillPlaceholder(document, "@INTERFACES@", FormatInterfaces(interfaces, examples));
  examples.RequireAllTaken();
  return document;
}

}  // namespace qm::docs
