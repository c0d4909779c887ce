#include "services/bench/web/Server.h"

#include "base/JsonMessage.h"
#include "services/bench/commands/Request.h"
#include "services/bench/screen/Compositor.h"
#include "services/bench/screen/PixelCodec.h"
#include "services/ctl/Names.h"

#include <nlohmann/json.hpp>

#include <libsoup/soup.h>

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <fstream>
#include <map>
#include <sstream>

namespace zm::bench::web {

namespace {

constexpr goffset MaxBodyBytes = 64 * 1024;
// A page needs a handful.
constexpr int MostConnections = 64;
// The last descriptors of the process are for the sockets that everything else depends on.
constexpr rlim_t KeptDescriptors = 16;
// How long a client may say nothing before its request is whole.
constexpr guint IdleSeconds = 5;
constexpr std::chrono::milliseconds AcceptPause(100);

const char* header(SoupServerMessage* message, const char* name) {
    const char* value = soup_message_headers_get_one(soup_server_message_get_request_headers(message), name);
    return value ? value : "";
}

void refuse(SoupServerMessage* message, guint status) {
    // A body that nobody will look at is not kept either.
    soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
    soup_message_headers_replace(soup_server_message_get_response_headers(message), "Connection", "close");
    soup_server_message_set_status(message, status, nullptr);
}

// Says what to do, to whoever looks at it in a browser.
void refuseWith(SoupServerMessage* message, const std::string& why) {
    refuse(message, SOUP_STATUS_FORBIDDEN);
    soup_server_message_set_response(message, "text/plain; charset=utf-8", SOUP_MEMORY_COPY, why.data(),
                                     why.size());
}

std::string wrongPlace(const std::string& port) {
    return "This is a head unit's bench. It answers only under the names 127.0.0.1 and localhost, and only "
           "to "
           "its own page.\n\n"
           "From another machine, make a tunnel:   ssh -L 9000:127.0.0.1:" +
           port +
           " USER@MACHINE\n"
           "then open its URL with your own port:  http://localhost:9000/?token=...\n";
}

std::string noToken(const std::string& port) {
    return "This is a head unit's bench. It wants the token of the URL that zmbench printed behind "
           "\"ready\":\n\n"
           "    http://127.0.0.1:" +
           port +
           "/?token=...\n\n"
           "Open that once; the browser then remembers it until the runtime folder is deleted or the browser "
           "ends.\n";
}

void answer(SoupServerMessage* message, const char* type, const std::string& bytes) {
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, type, SOUP_MEMORY_COPY, bytes.data(), bytes.size());
}

// A message of a connection that was handed to the library does not know its socket, but whose address it has.
constexpr const char* SocketOfAddress = "socket";

// A state or a picture may be long in coming.
void keepOpen(SoupServerMessage* message) {
    auto* caller = G_OBJECT(soup_server_message_get_remote_address(message));
    g_socket_set_timeout(G_SOCKET(g_object_get_data(caller, SocketOfAddress)), 0);
}

// The kernel gives the lowest free number, so a high one says how many are in use.
bool isOneOfTheLast(int fd) {
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 &&
           static_cast<rlim_t>(fd) + KeptDescriptors >= limit.rlim_cur;
}

// Counts a body without a declared length, and stops keeping it once it is too long.
void countChunk(SoupServerMessage* message, GBytes* chunk, gpointer) {
    const auto size =
        GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(message), "body-size")) + g_bytes_get_size(chunk);
    g_object_set_data(G_OBJECT(message), "body-size", GSIZE_TO_POINTER(size));
    if (size > static_cast<size_t>(MaxBodyBytes)) {
        soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
    }
}

bool bodyTooLong(SoupServerMessage* message) {
    return GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(message), "body-size")) >
           static_cast<size_t>(MaxBodyBytes);
}

const std::map<std::string, const char*, std::less<>> contentTypes = {
    {".html", "text/html; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
};

// The computer keys of the hard keys, from the table that zmctl and the window have, too.
std::string shortcutsModule() {
    nlohmann::json table;
    for (const auto& row : ctl::hardKeys()) {
        table[std::to_string(row.number)] = row.shortcuts;
    }
    nlohmann::json commands;
    for (const auto& row : ctl::keyCommands()) {
        commands[std::string(row.key)] = row.command;
    }
    return "export const shortcuts = " + jsonText(table) +
           ";\nexport const commands = " + jsonText(commands) + ";\n";
}

} // namespace

Server::Server(EventLoop& loop, Backend backend, std::string pageFolder, const std::string& tokenFile)
    : m_backend(std::move(backend)), m_pageFolder(std::move(pageFolder)), m_guard(tokenFile), m_loop(loop),
      m_screen(m_backend.compositor,
               [this](std::vector<std::string> argv) { m_backend.run(std::move(argv), [](auto) {}); }),
      m_state(loop, m_backend.sources), m_server(nullptr) {
    m_server = soup_server_new("server-header", "bench", nullptr);
    soup_server_remove_websocket_extension(m_server, SOUP_TYPE_WEBSOCKET_EXTENSION_DEFLATE);
    // The guard stands on each exact path: one on a shorter path is not asked for a longer one.
    for (const char* path : {"/", "/api", "/ws/screen", "/ws/state"}) {
        soup_server_add_early_handler(m_server, path, &Server::guard, this, nullptr);
    }
    soup_server_add_websocket_handler(
        m_server, "/ws/screen", nullptr, nullptr,
        [](SoupServer*, SoupServerMessage*, const char*, SoupWebsocketConnection* connection, gpointer self) {
            static_cast<Server*>(self)->m_screen.add(connection);
        },
        this, nullptr);
    soup_server_add_websocket_handler(
        m_server, "/ws/state", nullptr, nullptr,
        [](SoupServer*, SoupServerMessage*, const char*, SoupWebsocketConnection* connection, gpointer self) {
            static_cast<Server*>(self)->m_state.add(connection);
        },
        this, nullptr);
    for (const char* path : {"/", "/api"}) {
        soup_server_add_handler(m_server, path, &Server::serve, this, nullptr);
    }
}

Server::~Server() {
    soup_server_disconnect(m_server);
    g_object_unref(m_server);
}

Result<std::string> Server::start(int port) {
    m_socket.reset(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int yes = 1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (!m_socket.valid() || ::setsockopt(m_socket.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
        ::bind(m_socket.get(), generic, size) != 0 || ::listen(m_socket.get(), SOMAXCONN) != 0 ||
        ::getsockname(m_socket.get(), generic, &size) != 0) {
        return systemError("port " + std::to_string(port));
    }
    watch();
    m_port = std::to_string(ntohs(address.sin_port));
    return "http://127.0.0.1:" + m_port + "/?token=" + m_guard.token();
}

void Server::watch() {
    m_watch = watchFd(m_loop, m_socket.get(), IoEvent::Readable, [this] { accept(); });
}

void Server::accept() {
    UniqueFd fd(::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!fd.valid()) {
        // Without a descriptor the caller stays in the queue and the socket stays readable.
        m_watch.reset();
        m_pause = afterDelay(m_loop, AcceptPause, [this] { watch(); });
        return;
    }
    if (*m_connections >= MostConnections || isOneOfTheLast(fd.get())) {
        return;
    }
    hand(std::move(fd));
}

void Server::hand(UniqueFd fd) {
    GSocket* socket = g_socket_new_from_fd(fd.get(), nullptr);
    if (!socket) {
        return;
    }
    fd.release();
    // The library keeps a connection that a client leaves without a word, with its descriptor.
    g_socket_set_timeout(socket, IdleSeconds);
    GSocketAddress* local = g_socket_get_local_address(socket, nullptr);
    // A client that has gone again has none.
    GSocketAddress* remote = g_socket_get_remote_address(socket, nullptr);
    if (local && remote) {
        GSocketConnection* stream = g_socket_connection_factory_create_connection(socket);
        g_object_set_data_full(G_OBJECT(remote), SocketOfAddress, g_object_ref(socket), g_object_unref);
        ++*m_connections;
        g_object_weak_ref(
            G_OBJECT(stream),
            [](gpointer count, GObject*) {
                const std::unique_ptr<std::shared_ptr<int>> connections(
                    static_cast<std::shared_ptr<int>*>(count));
                --**connections;
            },
            new std::shared_ptr<int>(m_connections));
        // libsoup takes its loop from the thread default context of whoever hands it a connection.
        g_main_context_push_thread_default(m_loop.context());
        soup_server_accept_iostream(m_server, G_IO_STREAM(stream), local, remote, nullptr);
        g_main_context_pop_thread_default(m_loop.context());
        g_object_unref(stream);
    }
    g_clear_object(&local);
    g_clear_object(&remote);
    g_object_unref(socket);
}

void Server::guard(SoupServer*, SoupServerMessage* message, const char* path, GHashTable* query, void* self) {
    auto* server = static_cast<Server*>(self);
    const Guard::Caller caller{header(message, "Host"), header(message, "Origin"), header(message, "Cookie"),
                               header(message, "Authorization")};
    if (!server->m_guard.knownPlace(caller)) {
        refuseWith(message, wrongPlace(server->m_port));
        return;
    }
    if (!server->m_guard.knownCaller(caller)) {
        const auto* token = query ? static_cast<const char*>(g_hash_table_lookup(query, "token")) : nullptr;
        if (!token || std::string_view(path) != "/" || !server->m_guard.isToken(token)) {
            refuseWith(message, noToken(server->m_port));
            return;
        }
        // The token leaves the address bar and goes on as a cookie.
        SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
        soup_message_headers_append(headers, "Connection", "close");
        soup_message_headers_append(headers, "Set-Cookie", server->m_guard.cookieHeader().c_str());
        soup_server_message_set_redirect(message, SOUP_STATUS_SEE_OTHER, "/");
        return;
    }
    if (soup_message_headers_get_content_length(soup_server_message_get_request_headers(message)) >
        MaxBodyBytes) {
        refuse(message, SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE);
        return;
    }
    if (std::string_view(path).starts_with("/ws/")) {
        keepOpen(message);
    }
    g_signal_connect(message, "got-chunk", G_CALLBACK(countChunk), nullptr);
}

void Server::serve(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, void* self) {
    auto* server = static_cast<Server*>(self);
    SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
    // Each answer ends its connection: the library keeps the descriptor of one that its client has closed.
    soup_message_headers_append(headers, "Connection", "close");
    soup_message_headers_append(headers, "Content-Security-Policy",
                                "default-src 'self'; img-src 'self' blob: data:; frame-ancestors 'none'");
    soup_message_headers_append(headers, "X-Content-Type-Options", "nosniff");
    soup_message_headers_append(headers, "Cache-Control", "no-store");
    soup_message_headers_append(headers, "Referrer-Policy", "no-referrer");
    const std::string_view method = soup_server_message_get_method(message);
    const std::string name = path;
    if (bodyTooLong(message)) {
        soup_server_message_set_status(message, SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, nullptr);
    } else if (name == "/api/command") {
        method == "POST" ? server->command(message)
                         : soup_server_message_set_status(message, SOUP_STATUS_METHOD_NOT_ALLOWED, nullptr);
    } else if (method != "GET" && method != "HEAD") {
        soup_server_message_set_status(message, SOUP_STATUS_METHOD_NOT_ALLOWED, nullptr);
    } else if (name == "/api/shot.png") {
        server->shot(message);
    } else if (name == "/api/film.webm") {
        server->film(message);
    } else if (name == "/shortcuts.js") {
        answer(message, contentTypes.find(".js")->second, shortcutsModule());
    } else {
        server->file(message, name == "/" ? "/index.html" : name);
    }
}

void Server::command(SoupServerMessage* message) {
    GBytes* body = soup_message_body_flatten(soup_server_message_get_request_body(message));
    gsize size = 0;
    const auto* bytes = static_cast<const char*>(g_bytes_get_data(body, &size));
    auto request = commands::parseRequest({bytes, size});
    g_bytes_unref(body);
    if (!request || request->words.empty()) {
        answer(message, "text/plain; charset=utf-8", request ? "a command has words" : request.error());
        soup_server_message_set_status(message, SOUP_STATUS_BAD_REQUEST, nullptr);
        return;
    }
    soup_server_message_pause(message);
    const std::shared_ptr<SoupServerMessage> held(SOUP_SERVER_MESSAGE(g_object_ref(message)), g_object_unref);
    m_backend.run(std::move(request->words), [held](const Backend::Answer& result) {
        answer(held.get(), "application/json",
               jsonText({{"out", result.out}, {"err", result.err}, {"exit", result.exit}}));
        soup_server_message_unpause(held.get());
    });
}

void Server::shot(SoupServerMessage* message) {
    const Image& frame = m_backend.compositor.compose();
    const auto png =
        screen::encodePng({frame.pixels.data(), frame.stride, {0, 0, frame.width, frame.height}});
    if (png) {
        answer(message, "image/png", *png);
    } else {
        soup_server_message_set_status(message, SOUP_STATUS_INTERNAL_SERVER_ERROR, png.error().c_str());
    }
}

void Server::film(SoupServerMessage* message) {
    GMappedFile* mapped = g_mapped_file_new(m_backend.filmFile.c_str(), FALSE, nullptr);
    if (!mapped) {
        soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
        return;
    }
    GBytes* bytes = g_mapped_file_get_bytes(mapped);
    keepOpen(message);
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_message_headers_set_content_type(soup_server_message_get_response_headers(message), "video/webm",
                                          nullptr);
    soup_message_body_append_bytes(soup_server_message_get_response_body(message), bytes);
    g_bytes_unref(bytes);
    g_mapped_file_unref(mapped);
}

void Server::file(SoupServerMessage* message, const std::string& path) {
    const size_t dot = path.rfind('.');
    const auto type = contentTypes.find(dot == std::string::npos ? "" : path.substr(dot));
    // All files lie in one folder: a path with a further slash names none of them.
    std::ifstream stream;
    if (type != contentTypes.end() && path.find('/', 1) == std::string::npos) {
        stream.open(m_pageFolder + path, std::ios::binary);
    }
    if (!stream.is_open()) {
        soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
        return;
    }
    std::ostringstream content;
    content << stream.rdbuf();
    answer(message, type->second, content.str());
}

} // namespace zm::bench::web
