// SPDX-License-Identifier: Apache-2.0
// The two tables of the receiving side: channels by id, unanswered messages by receive id.
#include <mutex>
#include <unordered_map>

#include "platform/linux/channel.h"

namespace platform {
namespace {

// Never destroyed: threads may still receive while the process ends.
struct Tables {
  std::mutex lock;
  std::unordered_map<int, std::shared_ptr<Channel>> channels;
  std::unordered_map<int, std::shared_ptr<Inlet>> inHand;
  int lastChannelId = 0;
  int lastReceiveId = 0;
};

Tables& TheTables() {
  static Tables& tables = *new Tables;
  return tables;
}

template <class Value>
std::shared_ptr<Value> Lookup(std::unordered_map<int, std::shared_ptr<Value>>& table, int id) {
  const auto found = table.find(id);
  return found == table.end() ? nullptr : found->second;
}

template <class Value>
std::shared_ptr<Value> Take(std::unordered_map<int, std::shared_ptr<Value>>& table, int id) {
  const auto found = table.find(id);
  if (found == table.end()) return nullptr;
  std::shared_ptr<Value> value = std::move(found->second);
  table.erase(found);
  return value;
}

// Ids go up, so that an id kept by mistake names nothing rather than something else.
template <class Value>
int NextId(const std::unordered_map<int, std::shared_ptr<Value>>& table, int& last) {
  do {
    last = last == 0x3fffffff ? 1 : last + 1;
  } while (table.count(last) != 0);
  return last;
}

}  // namespace

int NewChannelId() {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  return NextId(tables.channels, tables.lastChannelId);
}

void AddChannel(const std::shared_ptr<Channel>& channel) {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  tables.channels[channel->chid()] = channel;
}

std::shared_ptr<Channel> FindChannel(int chid) {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  return Lookup(tables.channels, chid);
}

std::shared_ptr<Channel> RemoveChannel(int chid) {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  return Take(tables.channels, chid);
}

int AddMessageInHand(const std::shared_ptr<Inlet>& inlet) {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  const int id = NextId(tables.inHand, tables.lastReceiveId);
  tables.inHand[id] = inlet;
  return id;
}

std::shared_ptr<Inlet> FindMessageInHand(int receiveId) {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  return Lookup(tables.inHand, receiveId);
}

std::shared_ptr<Inlet> RemoveMessageInHand(int receiveId) {
  Tables& tables = TheTables();
  const std::lock_guard<std::mutex> hold(tables.lock);
  return Take(tables.inHand, receiveId);
}

}  // namespace platform
