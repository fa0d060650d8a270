#include "merge/CustomActionType.h"

namespace qm::merge {

namespace {

// The low bits of a type: what the action is, and where it comes from.
constexpr unsigned long kKindBits = 0x3F;

// The flags of a type.
constexpr unsigned long kContinues = 0x40;  ///< even if the action fails
constexpr unsigned long kAsynchronous = 0x80;
constexpr unsigned long kFirstSequence = 0x100;   ///< deferred: runs on rollback
constexpr unsigned long kOncePerProcess = 0x200;  ///< deferred: runs on commit
constexpr unsigned long kDeferred = 0x400;
constexpr unsigned long kAsSystem = 0x800;
constexpr unsigned long k64BitScript = 0x1000;
constexpr unsigned long kHidesTarget = 0x2000;

std::string DescribeKind(unsigned long kind) {
  switch (kind) {
    case 1:
      return "calls a function of a DLL in the Binary table";
    case 2:
      return "runs a program in the Binary table";
    case 5:
      return "runs JScript in the Binary table";
    case 6:
      return "runs VBScript in the Binary table";
    case 7:
      return "installs a package inside this one";
    case 17:
      return "calls a function of an installed DLL";
    case 18:
      return "runs an installed program";
    case 19:
      return "shows an error and ends the installation";
    case 21:
      return "runs an installed file of JScript";
    case 22:
      return "runs an installed file of VBScript";
    case 23:
      return "installs a package of the media";
    case 34:
      return "runs a program in a folder";
    case 35:
      return "sets the path of a folder";
    case 37:
      return "runs JScript of its row";
    case 38:
      return "runs VBScript of its row";
    case 39:
      return "installs a product that was advertised";
    case 50:
      return "runs a program named by a property";
    case 51:
      return "sets a property";
    case 53:
      return "runs JScript in a property";
    case 54:
      return "runs VBScript in a property";
    default:
      return "kind " + std::to_string(kind) + ", which is unknown";
  }
}

}  // namespace

std::string DescribeCustomActionType(std::optional<long> type) {
  if (!type) {
    return "has no type";
  }
  const auto bits = static_cast<unsigned long>(*type);
  std::string when;
  const auto add = [&](unsigned long flag, const char* words) {
    when += (bits & flag) == 0 ? "" : (when.empty() ? "; " : ", ") + std::string(words);
  };
  if (bits & kDeferred) {
    add(kDeferred, bits & kFirstSequence    ? "on rollback"
                   : bits & kOncePerProcess ? "on commit"
                                            : "deferred");
    add(kAsSystem, "as the system");
  } else if ((bits & kFirstSequence) && (bits & kOncePerProcess)) {
    add(kFirstSequence, "again on the side of the user's process");
  } else {
    add(kFirstSequence, "in the first sequence only");
    add(kOncePerProcess, "once per process");
  }
  add(kContinues, "ignores a failure");
  add(kAsynchronous, "does not wait for its end");
  add(k64BitScript, "as a 64-bit script");
  add(kHidesTarget, "hides its target in logs");
  return DescribeKind(bits & kKindBits) + when;
}

}  // namespace qm::merge
