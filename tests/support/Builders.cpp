#include "tests/support/Builders.h"

namespace test_support {

using ornwhatsnew::FeatureListDetail;
using ornwhatsnew::FeatureListItem;

namespace {

void AppendField(std::string_view field, std::string& line) {
  const bool quoted = field.find(',') != std::string_view::npos;
  if (quoted) line += '"';
  line += field;
  if (quoted) line += '"';
}

}  // namespace

DataFile::DataFile() {
  Line(Header());
}

std::string_view DataFile::Header() {
  return "App Version,Grouping ID (Jira Epic / BUGFIX / INTERNAL / MISC),"
         "Jira ID (Story / Task / Bug),Salience,Ask User For Rating,"
         "Earliest Relevant Change Version,Only Relevant Platform,URL To Discussion Thread,"
         "Changelist ID,Public/Internal message";
}

DataFile& DataFile::Row(const ChangeRow& row) {
  const std::string* const fields[] = {
      &row.version,      &row.groupingID, &row.storyID, &row.salience, &row.ratingRequest,
      &row.firstVersion, &row.platform,   &row.url,     &row.sha,      &row.description};
  std::string line;
  bool first = true;
  for (const std::string* field : fields) {
    if (!first) line += ',';
    first = false;
    AppendField(*field, line);
  }
  return Line(line);
}

DataFile& DataFile::ChangesSince(std::string_view version) {
  return Line(std::string(version) + ",Changes-Since,,,,,,,,");
}

DataFile& DataFile::Line(std::string_view line) {
  text_ += line;
  text_ += '\n';
  return *this;
}

std::string DataFileText(std::initializer_list<ChangeRow> rows) {
  DataFile file;
  for (const ChangeRow& row : rows) file.Row(row);
  return file.Text();
}

std::shared_ptr<FeatureListDetail> MakeDetail(const ChangeRow& row) {
  return std::make_shared<FeatureListDetail>(row.description, row.version, row.groupingID,
                                             row.storyID, row.salience, row.firstVersion,
                                             row.platform, row.ratingRequest, row.url, row.sha);
}

std::shared_ptr<FeatureListItem> MakeItem(const ItemTexts& texts,
                                          const std::vector<ChangeRow>& changes) {
  auto item = std::make_shared<FeatureListItem>(
      texts.groupingKey, texts.internalKey, texts.name, texts.description,
      static_cast<FeatureListItem::Visibility>(texts.visibility));
  for (const ChangeRow& change : changes) item->AddFeatureDetail(MakeDetail(change));
  return item;
}

}  // namespace test_support
