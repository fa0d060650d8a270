#include "tests/image/FuzzTargets.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

#include "image/Database.h"
#include "merge/FileSearch.h"
#include "merge/Findings.h"
#include "merge/MergePlan.h"
#include "merge/ReadModule.h"
#include "merge/TargetFolders.h"
#include "tests/support/DatabaseFile.h"

namespace qm::tests {

namespace {

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

/// Runs `work`, which may throw Damage in one of these parts.
template <class Work>
void MayBeDamaged(std::initializer_list<image::DamagedPart> parts, Work work) {
  try {
    work();
  } catch (const image::Damage& damage) {
    const std::string_view sentence = damage.what();
    Require(std::find(parts.begin(), parts.end(), damage.Part()) != parts.end());
    Require(!sentence.empty() && sentence.size() < 400 && sentence.back() == '.');
    Require(std::all_of(sentence.begin(), sentence.end(),
                        [](char character) { return character >= ' ' && character <= '~'; }));
  }
}

/// A field that readers ignore is the number of zeros that follow: up to 8 MB, so that small
/// inputs reach the lists that continue the allocation table.
MemorySource SourceOf(const image::Bytes& input) {
  const std::uint64_t zeros = input.size() >= 10 ? 128ULL * image::ReadU16(input.data() + 8) : 0;
  return {input, input.size() + zeros};
}

/// Whatever the bytes are, reading them costs no more than the size of the file justifies.
void RequireBoundedCost(const MemorySource& source) {
  Require(source.bytesRead <= 10 * source.Size() + 8192);
}

void RunCompoundFile(const image::Bytes& input) {
  MemorySource source = SourceOf(input);
  MayBeDamaged({image::DamagedPart::NoDatabase, image::DamagedPart::Structure}, [&] {
    image::CompoundFile file(source);
    file.Defects();
    file.FindUnknownVersion();
    for (const char16_t* const name : {u"\005SummaryInformation", u"Icon", u"a"}) {
      if (const auto stream = file.FindStream(name)) {
        MayBeDamaged({image::DamagedPart::Structure, image::DamagedPart::Row},
                     [&] { file.Read(*stream, image::DamagedPart::Row, "The stream"); });
      }
    }
  });
  RequireBoundedCost(source);
}

void ReadRows(image::Database& database, const image::TableRows& rows) {
  const auto decode = [](std::string_view text) {
    return std::u16string(text.begin(), text.end());
  };
  std::size_t streams = 0;
  for (std::size_t row = 0; row < rows.Count(); ++row) {
    for (std::size_t i = 0; i < rows.Definition().columns.size(); ++i) {
      const image::Column& column = rows.Definition().columns[i];
      if (column.kind == image::ColumnKind::Text) {
        Require(rows.IsNull(row, i) == (rows.StringNumber(row, i) == 0));
        rows.Text(row, i);
      } else if (column.kind == image::ColumnKind::Integer) {
        Require(rows.IsNull(row, i) == !rows.Integer(row, i));
      } else if (++streams < 8) {
        database.ReadStream(rows, row, i, decode);
      }
    }
  }
}

void RunDatabase(const image::Bytes& input) {
  MemorySource source = SourceOf(input);
  MayBeDamaged({image::DamagedPart::NoDatabase, image::DamagedPart::Structure}, [&] {
    image::Database database(source);
    MayBeDamaged({image::DamagedPart::Structure, image::DamagedPart::Table, image::DamagedPart::Row,
                  image::DamagedPart::Summary},
                 [&] { database.Verify(); });
    RequireBoundedCost(source);
    database.Defects();
    database.UnknownKind();
    MayBeDamaged({image::DamagedPart::Structure, image::DamagedPart::Summary},
                 [&] { database.ReadSummary(); });
    std::size_t size = 0;
    for (const std::string_view name : database.TableNames()) {
      Require(database.HasTable(name) || name.empty());
      if (size > source.Size()) {
        break;
      }
      MayBeDamaged(
          {image::DamagedPart::Structure, image::DamagedPart::Table, image::DamagedPart::Row}, [&] {
            const image::TableRows rows = database.ReadTable(name);
            size += rows.Size();
            ReadRows(database, rows);
          });
    }
  });
}

/// The input is the size of the pool in two bytes, the pool, and its data.
void RunStringPool(const image::Bytes& input) {
  if (input.size() < 2) {
    return;
  }
  const auto begin = input.begin() + 2;
  const auto middle =
      begin + std::min<std::ptrdiff_t>(image::ReadU16(input.data()), input.end() - begin);
  MayBeDamaged({image::DamagedPart::Structure}, [&] {
    const image::StringPool pool(image::Bytes(begin, middle), image::Bytes(middle, input.end()));
    std::size_t size = pool.UnusedBytes();
    for (std::uint32_t number = 0; number < pool.EndNumber(); ++number) {
      size += pool.Text(number).size();
    }
    Require(size == static_cast<std::size_t>(input.end() - middle));
    Require(pool.ReferenceSize() == 2 || pool.ReferenceSize() == 3);
  });
}

void RunSummary(const image::Bytes& input) {
  MayBeDamaged({image::DamagedPart::Summary}, [&] {
    const image::SummaryInformation summary(input);
    for (std::uint32_t property = 0; property < 20; ++property) {
      if (const auto text = summary.Text(property)) {
        Require(text->size() <= input.size() && text->find('\0') == text->npos);
      }
    }
    Require(summary.CodePage() <= 0xFFFF);
  });
}

/// Reads a module and asks a set of two copies of it, one under another ID, everything.
void RunModule(const image::Bytes& input) {
  merge::SharedStreams shared;
  const auto read = [&](const char* name) {
    MemorySource source = SourceOf(input);
    shared.BeginModule(name);
    merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage, &shared);
    RequireBoundedCost(source);
    return module;
  };
  const merge::Module module = read("one");
  merge::Module other = read("other");
  Require(shared.TakeUnread().size() <= 1);
  other.moduleId += ".other";
  Require(module.failure.size() < 2000);
  const merge::TargetFolders folders(module);
  for (const merge::Directory& directory : module.directories) {
    Require(merge::FormatTargetFolder(folders.Resolve(directory.key)).size() < 70000);
  }
  const std::vector<merge::Module> modules{module, other};
  const merge::ModuleIndex index(modules);
  for (const merge::Finding& finding : merge::CheckModules(index, {0, 1})) {
    Require(finding.text.size() < 100000);
  }
  merge::PlanMerge(index, {0, 1});
  merge::FindDeliverers(index, {}, "*");
}

}  // namespace

const FuzzTarget kFuzzTargets[5] = {{"compound_file", "file", RunCompoundFile},
                                    {"database", "file", RunDatabase},
                                    {"string_pool", "pool", RunStringPool},
                                    {"summary", "summary", RunSummary},
                                    {"module", "file", RunModule}};

}  // namespace qm::tests
