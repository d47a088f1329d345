#include "transport/redfish/collection_reader.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::transport {

using namespace json;

namespace {

constexpr std::size_t kMaxPages = 1000;

// One collection being read. Owned by the handlers of its requests in flight.
class Reading : public std::enable_shared_from_this<Reading> {
  public:
    Reading(RedfishService& service, CollectionOptions options,
            std::function<void(CollectionAnswer&&)> done)
        : service_(service), options_(std::move(options)), done_(std::move(done)) {}

    void StartCollection(const std::string& path) {
        path_ = path;
        const std::string expand = service_.ExpandQuery(options_.expand_levels);
        GetPage(expand.empty() ? path : path + "?" + expand, !expand.empty());
    }

    void StartMembers(const std::vector<std::string>& paths) {
        for (const auto& path : paths) AddLink(path);
        FinishWhenComplete();
    }

  private:
    void GetPage(const std::string& target, bool is_expanded);
    void TakePage(const std::string& target, bool is_expanded, RedfishAnswer&& answer);
    void TakeMembers(boost::json::object& page);
    void TakeMember(boost::json::value& member);
    bool FollowNextPage(const boost::json::object& page, bool is_expanded);
    void CheckCount(const boost::json::object& page);
    std::optional<std::size_t> AddSlot(const std::string& path);
    void AddLink(const std::string& path);
    void GetMember(std::size_t slot);
    void FinishWhenComplete();
    [[nodiscard]] bool IsComplete(const boost::json::object& member) const;

    RedfishService& service_;
    CollectionOptions options_;
    std::function<void(CollectionAnswer&&)> done_;
    std::string path_;
    CollectionAnswer answer_;
    struct Slot {
        std::string path;
        boost::json::object body;
        bool is_read = false;
    };
    std::vector<Slot> slots_;
    std::unordered_map<std::string, std::size_t> slot_of_path_;
    std::unordered_set<std::string> pages_;
    std::size_t missing_ = 0;  // members still to come
    std::size_t read_ = 0;
    bool pages_done_ = true;
};

void Reading::GetPage(const std::string& target, bool is_expanded) {
    pages_done_ = false;
    pages_.insert(target);
    GetOptions get = options_.get;
    get.is_attempt = is_expanded && pages_.size() == 1;
    get.is_slow = get.is_slow || is_expanded;
    auto self = shared_from_this();
    service_.Get(target, get, [self, target, is_expanded](RedfishAnswer&& answer) {
        self->TakePage(target, is_expanded, std::move(answer));
    });
}

void Reading::TakePage(const std::string& target, bool is_expanded, RedfishAnswer&& answer) {
    const bool is_first = pages_.size() == 1;
    const bool gave_members = answer.Ok() && answer.body.contains("Members");
    // $expand is only a shortcut: whatever comes of it but a collection, the plain way is tried.
    const bool can_retry_plainly = answer.failure.problem != RedfishProblem::kNotReached ||
                                   answer.failure.transport == HttpErrorKind::kTimeout ||
                                   answer.failure.transport == HttpErrorKind::kTruncated ||
                                   answer.failure.transport == HttpErrorKind::kTooLarge ||
                                   answer.failure.transport == HttpErrorKind::kReset ||
                                   answer.failure.transport == HttpErrorKind::kProtocol;
    if (is_expanded && is_first && !gave_members && can_retry_plainly && !service_.IsLoginLost()) {
        if (answer.failure.problem != RedfishProblem::kNotFound) service_.ExpandRefused();
        pages_.clear();
        GetPage(path_, false);
        return;
    }
    if (!answer.warning.empty()) answer_.issues.push_back(answer.warning);
    if (answer.failure) {
        if (is_first) {
            answer_.failure = answer.failure;
        } else {
            answer_.issues.push_back(answer.failure.text);
            ++answer_.failed_members;
        }
        pages_done_ = true;
        FinishWhenComplete();
        return;
    }
    TakeMembers(answer.body);
    if (answer.body.contains("error")) {
        answer_.issues.push_back("GET " + target + " gave members and an error together");
    }
    if (!FollowNextPage(answer.body, is_expanded)) {
        pages_done_ = true;
        CheckCount(answer.body);
    }
    FinishWhenComplete();
}

void Reading::TakeMembers(boost::json::object& page) {
    boost::json::value* members = page.if_contains("Members");
    if (members != nullptr && members->is_array()) {
        for (auto& member : *members->if_array()) TakeMember(member);
    } else if (members != nullptr && members->is_object()) {
        TakeMember(*members);  // the only member without the list
    } else if (pages_.size() == 1) {
        answer_.failure.problem = RedfishProblem::kBadBody;
        answer_.failure.text = "GET " + path_ + " answered without a list of members";
    } else {
        answer_.issues.push_back("GET " + path_ + ": a later page came without a list of members");
        ++answer_.failed_members;
    }
}

void Reading::TakeMember(boost::json::value& member) {
    boost::json::object* object = member.if_object();
    const std::string path =
        object != nullptr ? LinkPath(Text(*object, "@odata.id")) : LinkPath(LinkOf(member));
    if (path.empty()) {
        if (object != nullptr && IsComplete(*object)) {  // inline, but without an address
            slots_.push_back({path_ + "/" + Text(*object, "Id"), std::move(*object), true});
            ++read_;
            return;
        }
        answer_.issues.push_back("GET " + path_ + ": a member without an address was left out");
        ++answer_.failed_members;
        return;
    }
    if (options_.wants_member && !options_.wants_member(path)) return;
    const auto slot = AddSlot(path);
    if (!slot) return;
    if (object != nullptr && IsComplete(*object)) {
        slots_[*slot].body = std::move(*object);
        slots_[*slot].is_read = true;
        ++read_;
        return;
    }
    // What came inline is kept for the case that the member cannot be read singly.
    if (object != nullptr && object->contains("Id")) slots_[*slot].body = std::move(*object);
    GetMember(*slot);
}

bool Reading::IsComplete(const boost::json::object& member) const {
    return std::all_of(options_.required_fields.begin(), options_.required_fields.end(),
                       [&](const std::string& field) { return member.contains(field); });
}

// Nothing when the same member was seen before: each is read once.
std::optional<std::size_t> Reading::AddSlot(const std::string& path) {
    const auto [found, is_new] = slot_of_path_.emplace(path, slots_.size());
    if (!is_new) {
        ++answer_.merged_duplicates;
        return std::nullopt;
    }
    slots_.push_back({path, {}, false});
    return found->second;
}

void Reading::AddLink(const std::string& path) {
    if (path.empty() || (options_.wants_member && !options_.wants_member(path))) return;
    if (const auto slot = AddSlot(path)) GetMember(*slot);
}

void Reading::GetMember(std::size_t slot) {
    ++missing_;
    GetOptions get = options_.get;
    get.is_slow = false;
    auto self = shared_from_this();
    service_.Get(slots_[slot].path, get, [self, slot](RedfishAnswer&& answer) {
        --self->missing_;
        if (answer.Ok()) {
            self->slots_[slot].body = std::move(answer.body);
            self->slots_[slot].is_read = true;
            ++self->read_;
        } else {
            const bool licence = answer.failure.problem == RedfishProblem::kLicence;
            self->answer_.issues.push_back(answer.failure.text +
                                           (licence ? " (needs a licence)" : ""));
            ++self->answer_.failed_members;
            self->slots_[slot].is_read = !self->slots_[slot].body.empty();
            if (answer.failure.transport == HttpErrorKind::kDeadline) {
                self->answer_.ran_out_of_time = true;
            }
        }
        if (!answer.warning.empty()) self->answer_.issues.push_back(answer.warning);
        if (self->options_.on_progress) {
            self->options_.on_progress(self->read_, self->slots_.size());
        }
        self->FinishWhenComplete();
    });
}

bool Reading::FollowNextPage(const boost::json::object& page, bool is_expanded) {
    std::string next = Text(page, "Members@odata.nextLink");
    if (next.empty()) next = Text(page, "@odata.nextLink");
    if (next.empty()) return false;
    const std::string target = LinkTarget(next);
    if (target.empty() || pages_.count(target) != 0) {
        answer_.issues.push_back("GET " + path_ + ": the link to the next page leads back");
        return false;
    }
    if (pages_.size() >= kMaxPages) {
        answer_.issues.push_back("GET " + path_ + ": more than 1000 pages, the rest was left out");
        ++answer_.failed_members;
        return false;
    }
    GetPage(target, is_expanded);
    return true;
}

void Reading::CheckCount(const boost::json::object& page) {
    const auto count = Integer(page, "Members@odata.count");
    const auto seen = static_cast<std::int64_t>(slots_.size()) + answer_.merged_duplicates;
    if (!count || options_.wants_member || *count == seen) return;
    answer_.issues.push_back("GET " + path_ + ": announced " + std::to_string(*count) +
                             " members, gave " + std::to_string(seen));
}

void Reading::FinishWhenComplete() {
    if (!pages_done_ || missing_ != 0 || !done_) return;
    for (auto& slot : slots_) {
        if (slot.is_read) answer_.members.push_back({std::move(slot.path), std::move(slot.body)});
    }
    auto done = std::exchange(done_, nullptr);
    done(std::move(answer_));
}

}  // namespace

void ReadCollection(RedfishService& service, const std::string& path, CollectionOptions options,
                    std::function<void(CollectionAnswer&&)> done) {
    std::make_shared<Reading>(service, std::move(options), std::move(done))->StartCollection(path);
}

void ReadMembers(RedfishService& service, const std::vector<std::string>& paths,
                 CollectionOptions options, std::function<void(CollectionAnswer&&)> done) {
    std::make_shared<Reading>(service, std::move(options), std::move(done))->StartMembers(paths);
}

}  // namespace Vantix::transport
