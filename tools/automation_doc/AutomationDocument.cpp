#include "tools/automation_doc/AutomationDocument.h"

#include <stdexcept>

namespace qm::docs {

namespace {

std::string Code(const std::string& text) { return '`' + text + '`'; }

/// Returns a link to the section of a type.
std::string LinkTo(const std::string& name) {
  std::string anchor;
  for (const char c : name) {
    anchor += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return '[' + name + "](#" + anchor + ')';
}

/// Breaks a paragraph into lines.
std::string Paragraph(const std::string& text) {
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

std::string Example(const Examples::Example& example) { return "    " + example.line + "\n\n"; }

std::string PlaceOf(const MemberDescription& member) {
  return "slot " + std::to_string(member.slot) + ", DISPID " + std::to_string(member.id);
}

/// Returns the signatures, help and errors of a member, without a heading.
std::string MemberBody(const MemberDescription& member, bool isCppOnly) {
  std::string text;
  if (isCppOnly) {
    text = Paragraph(Code(member.declaration) + ", " + PlaceOf(member) + "; C++ only");
  } else {
    text = Code(member.signature) + "  \n" +
           Paragraph(Code(member.declaration) + ", " + PlaceOf(member));
  }
  text += Paragraph(member.help);
  if (!member.errors.empty()) {
    text += Paragraph("Errors: " + member.errors);
  }
  return text;
}

std::string Contents(const std::vector<InterfaceDescription>& interfaces) {
  std::string text;
  for (const InterfaceDescription& description : interfaces) {
    if (!description.IsCollection()) {
      text += "  - " + LinkTo(description.name) + '\n';
    }
  }
  return text;
}

std::string Classes(const std::vector<ClassDescription>& classes, Examples& examples) {
  std::string text;
  for (const ClassDescription& description : classes) {
    text += "### " + description.name + "\n\n";
    text += Paragraph("ProgID " + Code(description.programId) + ", class " +
                      Code(description.guid) + ", interface " + LinkTo(description.interfaceName));
    text += Paragraph(description.help);
    text += Example(examples.Take(description.name));
  }
  return text;
}

/// Replaces the type of a collection's elements in `text` by the word "Element".
std::string InGeneral(std::string text, const std::string& elementType) {
  for (size_t at = 0; (at = text.find(elementType, at)) != std::string::npos;) {
    text.replace(at, elementType.size(), "Element");
  }
  return text;
}

bool AreAlike(const InterfaceDescription& a, const InterfaceDescription& b) {
  const std::string& elementA = a.Find("Item")->resultType;
  const std::string& elementB = b.Find("Item")->resultType;
  if (a.members.size() != b.members.size() || a.base != b.base) {
    return false;
  }
  for (size_t i = 0; i < a.members.size(); ++i) {
    if (InGeneral(MemberBody(a.members[i], false), elementA) !=
        InGeneral(MemberBody(b.members[i], false), elementB)) {
      return false;
    }
  }
  return true;
}

std::string Collections(const std::vector<InterfaceDescription>& interfaces, Examples& examples) {
  const InterfaceDescription* pattern = nullptr;
  std::string list;
  for (const InterfaceDescription& description : interfaces) {
    if (!description.IsCollection()) {
      continue;
    }
    if (!pattern) {
      pattern = &description;
    } else if (!AreAlike(*pattern, description)) {
      throw std::runtime_error(description.name + " is no collection like the others");
    }
    list += "### " + description.name + "\n\n" +
            Paragraph(Code(description.guid) + ", elements " +
                      LinkTo(description.Find("Item")->resultType) + ". " + description.help) +
            Example(examples.Take(description.name));
  }
  if (!pattern) {
    throw std::runtime_error("there are no collections");
  }

  std::string text;
  for (const MemberDescription& member : pattern->members) {
    const Examples::Example& example = examples.Take("Collection." + member.name);
    text += "### Collection." + member.name + "\n\n" +
            InGeneral(MemberBody(member, example.isCpp), pattern->Find("Item")->resultType) +
            Example(example);
  }
  return text + list;
}

std::string Interface(const InterfaceDescription& description, Examples& examples) {
  std::string text = "## " + description.name + "\n\n";
  text +=
      Paragraph(Code(description.guid) + ", derived from " +
                (description.base == "IDispatch" ? description.base : LinkTo(description.base)));
  text += Paragraph(description.help);
  if (!description.errors.empty()) {
    text += Paragraph("Errors of its members: " + description.errors);
  }

  std::string reserved;
  for (const MemberDescription& member : description.members) {
    if (description.errors.empty() && member.errors.empty()) {
      throw std::runtime_error("nothing tells the errors of " + description.name + '.' +
                               member.name);
    }
    if (member.isHidden) {
      reserved +=
          "- " + Code(member.declaration) + ", " + PlaceOf(member) + ". " + member.help + '\n';
      continue;
    }
    const std::string name = description.name + '.' + member.name;
    const Examples::Example& example = examples.Take(name);
    if (member.hasTypedOut && !example.isCpp) {
      throw std::runtime_error("scripts cannot call " + name + ": the example must be C++");
    }
    text += "### " + name + "\n\n" + MemberBody(member, example.isCpp) + Example(example);
  }
  return reserved.empty() ? text : text + "Reserved:\n\n" + reserved + '\n';
}

std::string Interfaces(const std::vector<InterfaceDescription>& interfaces, Examples& examples) {
  std::string text;
  for (const InterfaceDescription& description : interfaces) {
    if (!description.IsCollection()) {
      text += Interface(description, examples);
    }
  }
  return text;
}

/// Replaces the line `place` of the document by `text`.
void Fill(std::string& document, const std::string& place, const std::string& text) {
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
  Fill(document, "@CONTENTS@", Contents(interfaces));
  Fill(document, "@CLASSES@", Classes(classes, examples));
  Fill(document, "@COLLECTIONS@", Collections(interfaces, examples));
  Fill(document, "@INTERFACES@", Interfaces(interfaces, examples));
  examples.RequireAllTaken();
  return document;
}

}  // namespace qm::docs
