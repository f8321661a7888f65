#include "host/panel/PanelServer.h"

#include <sys/random.h>

#include <array>
#include <atomic>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

// After <utility>, which its coroutines need without including it.
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>

#include "host/panel/PageFiles.h"
#include "host/panel/ReadableFiles.h"
#include "host/panel/RequestCheck.h"
#include "platform/PlainText.h"
#include "platform/RunLoop.h"

namespace panel {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using Tcp = asio::ip::tcp;
using beast::error_code;
using Request = http::request<http::empty_body>;
using Response = http::response<http::string_body>;
using SharedText = std::shared_ptr<const std::string>;

constexpr int kMostConnections = 64;
constexpr uint16_t kReplacedCode = 4001;  // known to the page
constexpr uint32_t kLongestHead = 16 << 10;
constexpr size_t kLongestMessage = 1 << 20;
constexpr size_t kMostUnread = 16 << 20;
constexpr int kMostWaitingEvents = 1000;
constexpr int kMostLogLines = 1000;
constexpr std::chrono::seconds kPatience(30);
constexpr std::chrono::seconds kUntilNextAccept(1);

std::string MakeToken() {
  std::array<unsigned char, 32> bytes;
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::system_error(errno, std::generic_category(), "no random token can be had");
  }
  constexpr char kDigits[] = "0123456789abcdef";
  std::string token;
  for (const unsigned char byte : bytes) token.append({kDigits[byte >> 4], kDigits[byte & 15]});
  return token;
}

auto Into(error_code& error) { return asio::redirect_error(asio::use_awaitable, error); }

std::string_view View(beast::string_view text) { return {text.data(), text.size()}; }

// Counts a connection until the end of the scope.
class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& count_;
};

// The WebSocket of one page. Lives as long as its reader or a write.
class Page : public std::enable_shared_from_this<Page> {
 public:
  Page(beast::tcp_stream stream, uint64_t number) : number_(number), socket_(std::move(stream)) {
    beast::get_lowest_layer(socket_).expires_never();  // the WebSocket has its own limit
    // Pings in between, so only a page that does not answer is silent.
    socket_.set_option(websocket::stream_base::timeout{kPatience, kPatience, true});
    socket_.read_message_max(kLongestMessage);
    socket_.text(true);
  }

  uint64_t Number() const { return number_; }
  websocket::stream<beast::tcp_stream>& Socket() { return socket_; }

  // Returns false if the page does not read; the caller disconnects it.
  bool Send(const SharedText& text) {
    if (unread_ + text->size() > kMostUnread) return false;
    unread_ += text->size();
    queue_.push_back(text);
    if (queue_.size() == 1) Write();
    return true;
  }
  // Tells the page that another one has taken its place. Its reader ends when it has answered.
  void Replace() {
    socket_.async_close(static_cast<websocket::close_code>(kReplacedCode), [self = shared_from_this()](error_code) {});
  }
  void Disconnect() {
    error_code ignored;
    beast::get_lowest_layer(socket_).socket().close(ignored);
  }

 private:
  void Write() {
    socket_.async_write(asio::buffer(*queue_.front()), [self = shared_from_this()](error_code error, size_t) {
      if (error) return;  // the reader gets an error, too
      self->unread_ -= self->queue_.front()->size();
      self->queue_.pop_front();
      if (!self->queue_.empty()) self->Write();
    });
  }

  const uint64_t number_;
  websocket::stream<beast::tcp_stream> socket_;
  std::deque<SharedText> queue_;  // the first is being written
  size_t unread_ = 0;             // bytes in the queue
};

}  // namespace

// What pages and the log want from the main thread. Shared with the callbacks that wait in the run loop.
struct MainSide {
  ServerSetup setup;
  std::atomic<int> waiting = 0;  // events that the run loop has not delivered yet
  // Main thread only. What is sent is for this page: the answer to an older page's event must not reach a newer one.
  uint64_t page = 0;
  bool isClosed = false;
};

class PanelServer::Impl {
 public:
  explicit Impl(ServerSetup setup);
  ~Impl();

  const ServerIdentity& Identity() const { return identity_; }
  void Send(const std::string& type, const std::string& data);

 private:
  asio::awaitable<void> Accept();
  asio::awaitable<void> Serve(beast::tcp_stream stream);
  asio::awaitable<void> ServePage(beast::tcp_stream stream, Request request);
  Response Answer(const Decision& decision) const;
  Response Refusal(unsigned status) const;
  void SetHeaders(Response& response) const;
  void Welcome(const std::shared_ptr<Page>& page);
  bool Deliver(const std::string& message);  // false if it is not an event, or one too many
  void Log(const std::string& line);
  template <class Coroutine>
  void Spawn(Coroutine coroutine);

  std::shared_ptr<MainSide> main_ = std::make_shared<MainSide>();
  const PageFiles files_;
  ReadableFiles readable_;
  ServerIdentity identity_;
  // The rest belongs to the server's thread.
  int connections_ = 0;
  int logged_ = 0;
  uint64_t pages_ = 0;          // so many have connected
  std::shared_ptr<Page> page_;  // null while none is connected
  asio::io_context io_{1};
  Tcp::acceptor acceptor_{io_};
  std::thread thread_;
};

PanelServer::Impl::Impl(ServerSetup setup)
    : files_(setup.pageFolder), readable_(setup.previewFolder), identity_{MakeToken(), 0} {
  main_->setup = std::move(setup);
  acceptor_.open(Tcp::v4());
  acceptor_.bind({asio::ip::address_v4::loopback(), 0});
  acceptor_.listen();
  identity_.port = acceptor_.local_endpoint().port();
  Spawn(Accept());
  thread_ = std::thread([this] { io_.run(); });
}

PanelServer::Impl::~Impl() {
  main_->isClosed = true;
  io_.stop();
  thread_.join();
  page_.reset();
}

// A coroutine ends by itself when its connection does. An exception that leaves one is a fault of ours, and is not hidden.
template <class Coroutine>
void PanelServer::Impl::Spawn(Coroutine coroutine) {
  asio::co_spawn(io_, std::move(coroutine), [](const std::exception_ptr& error) {
    if (error) std::rethrow_exception(error);
  });
}

void PanelServer::Impl::Log(const std::string& line) {
  if (++logged_ > kMostLogLines) return;
  platform::RunLoop::Main().Post([main = main_, text = platform::OneLine(line)] {
    if (!main->isClosed) main->setup.log(text);
  });
}

asio::awaitable<void> PanelServer::Impl::Accept() {
  for (;;) {
    error_code error;
    Tcp::socket socket = co_await acceptor_.async_accept(Into(error));
    if (!error && connections_ < kMostConnections) {
      // A message must not wait until the page has acknowledged the one before, which a system may put off for 40 ms.
      error_code ignored;
      socket.set_option(Tcp::no_delay(true), ignored);
      Spawn(Serve(beast::tcp_stream(std::move(socket))));
      continue;
    }
    // No descriptors are left, or no connections. One that ends makes room.
    Log(error ? "a connection could not be accepted: " + error.message()
              : "a connection was closed: too many are open");
    if (!error) continue;
    asio::steady_timer timer(io_, kUntilNextAccept);
    co_await timer.async_wait(Into(error));
  }
}

asio::awaitable<void> PanelServer::Impl::Serve(beast::tcp_stream stream) {
  const Counted counted(connections_);
  beast::flat_buffer buffer;
  for (bool goesOn = true; goesOn;) {
    http::request_parser<http::empty_body> parser;
    parser.header_limit(kLongestHead);
    stream.expires_after(kPatience);
    error_code error;
    co_await http::async_read(stream, buffer, parser, Into(error));
    if (error) {
      // Browsers open connections in advance.
      const bool isUnused = error == http::error::end_of_stream || error == beast::error::timeout;
      if (!isUnused) Log("a connection ended without a whole request: " + error.message());
      co_return;
    }
    const Request& request = parser.get();
    const RequestParts parts{View(request.method_string()), View(request.target()), View(request[http::field::host]),
                             View(request[http::field::origin]), websocket::is_upgrade(request)};
    const Decision decision = CheckRequest(parts, identity_);
    if (decision.reason) Log("refused a request: " + std::string(decision.reason));
    if (decision.wanted == Wanted::kEvents) co_return co_await ServePage(std::move(stream), parser.release());
    Response response = Answer(decision);
    if (!decision.reason && response.result() != http::status::ok) Log("refused a file that is not for pages");
    goesOn = request.keep_alive() && response.result() == http::status::ok;
    response.keep_alive(goesOn);
    response.prepare_payload();
    co_await http::async_write(stream, response, Into(error));
    if (error) co_return;
  }
  error_code ignored;
  stream.socket().shutdown(Tcp::socket::shutdown_send, ignored);
}

asio::awaitable<void> PanelServer::Impl::ServePage(beast::tcp_stream stream, Request request) {
  const auto page = std::make_shared<Page>(std::move(stream), ++pages_);
  error_code error;
  co_await page->Socket().async_accept(request, Into(error));
  if (error) co_return;
  Welcome(page);
  beast::flat_buffer buffer;
  for (;;) {
    co_await page->Socket().async_read(buffer, Into(error));
    if (error) break;
    // A page whose place was taken is only waited for until it has answered the close.
    const bool isTaken = page_ != page;
    if (!isTaken && (!page->Socket().got_text() || !Deliver(beast::buffers_to_string(buffer.data())))) {
      Log("disconnected a page: it sent something else than events, or too many");
      break;
    }
    buffer.clear();
  }
  if (error && error != websocket::error::closed && error != asio::error::eof) {
    Log("a page was disconnected: " + error.message());
  }
  page->Disconnect();
  if (page_ == page) page_.reset();
}

void PanelServer::Impl::Welcome(const std::shared_ptr<Page>& page) {
  if (const auto older = std::exchange(page_, page)) older->Replace();
  platform::RunLoop::Main().Post([main = main_, number = page->Number()] { main->page = number; });
}

bool PanelServer::Impl::Deliver(const std::string& message) {
  const auto json = nlohmann::json::parse(message, nullptr, false);
  if (!json.is_object()) return false;
  const auto type = json.find("type"), data = json.find("data");
  if (type == json.end() || data == json.end() || !type->is_string() || !data->is_string()) return false;
  if (main_->waiting >= kMostWaitingEvents) return false;
  ++main_->waiting;
  platform::RunLoop::Main().Post([main = main_, type = type->get<std::string>(), data = data->get<std::string>()] {
    --main->waiting;
    if (!main->isClosed) main->setup.onEvent(type, data);
  });
  return true;
}

void PanelServer::Impl::Send(const std::string& type, const std::string& data) {
  readable_.Learn(data);
  const nlohmann::json event = {{"type", type}, {"data", data}};
  using nlohmann::json;
  const auto text = std::make_shared<const std::string>(event.dump(-1, ' ', false, json::error_handler_t::replace));
  asio::post(io_, [this, text, number = main_->page] {
    if (!page_ || page_->Number() != number || page_->Send(text)) return;
    Log("disconnected a page: it does not read what it is sent");
    page_->Disconnect();
    page_.reset();
  });
}

// Only the page's own files may run, be drawn or be reached from the page.
void PanelServer::Impl::SetHeaders(Response& response) const {
  const std::string socket = "ws://127.0.0.1:" + std::to_string(identity_.port);
  response.set("Content-Security-Policy",
               "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self' " + socket +
                   "; base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
  response.set("X-Content-Type-Options", "nosniff");
  response.set("Referrer-Policy", "no-referrer");
  response.set("Cross-Origin-Resource-Policy", "same-origin");
  response.set("Cross-Origin-Opener-Policy", "same-origin");
  response.set(http::field::cache_control, "no-store");
}

Response PanelServer::Impl::Refusal(unsigned status) const {
  Response response(http::int_to_status(status), 11);
  SetHeaders(response);
  return response;
}

Response PanelServer::Impl::Answer(const Decision& decision) const {
  if (decision.wanted == Wanted::kNothing) return Refusal(decision.status);
  Response response(http::status::ok, 11);
  SetHeaders(response);
  if (decision.wanted == Wanted::kPageFile) {
    const PageFiles::File* file = files_.Find(decision.name);
    if (!file) return Refusal(404);
    response.set(http::field::content_type, file->type);
    response.body() = file->bytes;
  } else {
    auto content = readable_.Read(decision.name);
    if (!content) return Refusal(404);
    response.set(http::field::content_type, content->type);
    response.body() = std::move(content->bytes);
  }
  return response;
}

PanelServer::PanelServer(ServerSetup setup) : impl_(std::make_unique<Impl>(std::move(setup))) {}
PanelServer::~PanelServer() = default;
std::string PanelServer::Address() const { return PageAddress(impl_->Identity()); }
void PanelServer::Send(const std::string& type, const std::string& data) { impl_->Send(type, data); }

}  // namespace panel
