#include "listview/list_settings.h"

namespace kel {
namespace {

const std::shared_ptr<ListSettings>& ThreadsList() {
  thread_local const auto settings = std::make_shared<ListSettings>();
  return settings;
}

std::string ItemOf(int column) { return ";" + std::to_string(column) + ";"; }

}  // namespace

ListSettings& CurrentList() { return *ThreadsList(); }

std::weak_ptr<ListSettings> WatchedList() { return ThreadsList(); }

bool NamesColumn(std::string_view list, int column) {
  return list.find(ItemOf(column)) != std::string_view::npos;
}

void AddColumn(std::string& list, int column) {
  if (!NamesColumn(list, column)) list += ItemOf(column);
}

void RemoveColumn(std::string& list, int column) {
  const std::string item = ItemOf(column);
  std::string rest;
  std::size_t from = 0;
  for (std::size_t at = list.find(item); at != std::string::npos; at = list.find(item, from)) {
    rest.append(list, from, at - from);
    from = at + item.size();
  }
  list = rest.append(list, from);
}

}  // namespace kel
