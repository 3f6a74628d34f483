#!/usr/bin/env python3
"""A stand-in for a language-model server: the part of the chat-completions protocol that Vesko speaks.

    tests/support/model_server.py [--port 11434] [--delay MS] [--answers FILE] [--mode MODE] [--first N] [--log FILE]

Prints "ready PORT" once it listens (port 0: any free one) and serves until it is ended. From a Python test:

    import model_server                          # tests/support is on the path of the test
    with model_server.ModelServer(port=0, delay=0.05, answers={...}) as server:
        ... server.port; server.requests         # each {"method", "path", "headers", "body", "items", "schema"}
        server.answers = {...}; server.mode = "hang"   # may be changed while it serves

The program asks at a fixed address. A test has that port to itself in a network of its own: `unshare --net` (with
`--map-root-user` for an ordinary user), then model_server.raise_loopback() inside.

GET /v1/models lists one model. POST /v1/chat/completions reads the items' lines out of the user's message and answers
each as the schema asks (told by response_format.json_schema.name). Answers, by path as the line shows it, as JSON:

    {"names": {"/home/me/.cache/thing": {"friendlyName": "Thing's cache", "safety": "seguro", "reason": "Comes back.",
                                         "kind": "cache"}},
     "moves": {"/home/me/.cache/other": {"action": "reclassify", "targetGroupID": "cache.npm"}},
     "others": true}

A path is a pattern of fnmatch's kind; what an entry leaves out gets a plain value. An item without a name of its own is
named "Refined " + its name unless "others" is false (then it gets no answer); one without a move gets no answer.

Modes of being bad, for the first N questions (default: all), the right answers afterwards:
    hang              takes the question and never says a word
    close             closes in the middle of the answer
    forever           an answer that never ends, in chunks
    huge              announces 1 GB and sends it
    huge-chunked      sends 1 GB in chunks
    schema            a JSON document of another form
    garbage           an answer that is no JSON
    damaged           bytes that are no UTF-8 inside the answer
    html              a page of another content type
    error             status 500
    redirect          status 307 to --elsewhere URL
    no-models         an empty list of models
    broken-models     a list of models that is no JSON
"""
import argparse
import fcntl
import fnmatch
import http.server
import json
import re
import socket
import struct
import sys
import threading
import time

MODEL = "stand-in"
REVIEW_LINE = re.compile(r"^(\d+) \| (.*?) \| (/.*) \| group:(\S+) \| (-?\d+) bytes$")
NAME_LINE = re.compile(r"^(\d+) \| (.*?) \| (/.*)$")
GIGABYTE = 1_000_000_000


def raise_loopback():
    """Bring up the loopback interface of a network namespace that was just made; needs root in it."""
    up_and_running = 0x1 | 0x40
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, 0x8914, struct.pack("16sH14x", b"lo", up_and_running))


def items_of(prompt):
    """The items that a prompt lists, in its order."""
    items = []
    for line in prompt.split("\n"):
        review = REVIEW_LINE.match(line)
        name = review or NAME_LINE.match(line)
        if not name:
            continue
        item = {"id": name[1], "name": name[2], "path": name[3]}
        if review:
            item.update(group=review[4], size=int(review[5]))
        items.append(item)
    return items


def _found(table, path):
    if path in table:
        return table[path]
    return next((value for pattern, value in table.items() if fnmatch.fnmatchcase(path, pattern)), None)


def entries_for(schema, items, answers):
    """What the table answers to these items, in the form of the schema of this name."""
    entries = []
    for item in items:
        if schema == "ReviewBatch":
            move = _found(answers.get("moves", {}), item["path"])
            if move is not None:
                entries.append({"id": item["id"], "action": "reclassify", "targetGroupID": None, "friendlyName": None,
                                "safety": "revisar", "reason": "O lugar certo.", **move})
            continue
        name = _found(answers.get("names", {}), item["path"])
        if name is not None or answers.get("others", True):
            entries.append({"id": item["id"], "friendlyName": "Refined " + item["name"], "safety": "seguro",
                            "reason": "It comes back by itself.", "kind": None, **(name or {})})
    return entries


class ModelServer:
    """Serves on a thread of its own from `with` on. Everything may be read and set from outside at any time."""

    def __init__(self, port=0, delay=0.0, answers=None, mode="ok", first=None, elsewhere="", log=None):
        self.answers = answers or {}
        self.delay = delay
        self.mode = mode
        self.first = first
        self.elsewhere = elsewhere
        self.requests = []
        self._log = log
        self._lock = threading.Lock()
        self._questions = 0
        self._server = _Listener(("127.0.0.1", port), _Handler)
        self._server.stand_in = self
        self.port = self._server.server_address[1]

    def __enter__(self):
        threading.Thread(target=self._server.serve_forever, kwargs={"poll_interval": 0.05}, daemon=True).start()
        return self

    def __exit__(self, *_):
        self._server.shutdown()
        self._server.server_close()

    def questions(self):
        """The requests for an answer among all requests."""
        with self._lock:
            return [request for request in self.requests if request["method"] == "POST"]

    def take(self, request):
        """Note a request; gives the mode to answer it in."""
        with self._lock:
            self.requests.append(request)
            if self._log:
                with open(self._log, "a", encoding="utf-8") as file:
                    file.write(json.dumps(request) + "\n")
            if request["method"] != "POST":
                return self.mode
            self._questions += 1
            return "ok" if self.first is not None and self._questions > self.first else self.mode


class _Listener(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64
    stand_in = None

    def handle_error(self, request, client_address):
        if not isinstance(sys.exc_info()[1], ConnectionError):
            super().handle_error(request, client_address)


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        mode = self._take(b"")
        if self.path != "/v1/models":
            self._send(404, {"error": {"message": "no such place"}})
        elif mode == "broken-models":
            self._send_bytes(200, b'{"object": "list", "data": [')
        else:
            listed = [] if mode == "no-models" else [{"id": MODEL, "object": "model", "owned_by": "tests"}]
            self._send(200, {"object": "list", "data": listed})

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        mode = self._take(body)
        if self.path != "/v1/chat/completions":
            self._send(404, {"error": {"message": "no such place"}})
            return
        time.sleep(self.server.stand_in.delay)
        if mode in BAD:
            BAD[mode](self)
            return
        try:
            self._answer(json.loads(body.decode("utf-8")))
        except (UnicodeDecodeError, ValueError, LookupError, TypeError) as error:
            self._send(400, {"error": {"message": f"{type(error).__name__}: {error}"}})

    def _take(self, body):
        try:
            document = json.loads(body.decode("utf-8")) if body else None
            prompt = document["messages"][-1]["content"] if document else ""
            schema = document["response_format"]["json_schema"]["name"] if document else None
        except (UnicodeDecodeError, ValueError, LookupError, TypeError):
            document, prompt, schema = body.decode("latin-1"), "", None
        return self.server.stand_in.take({"method": self.command, "path": self.path, "headers": dict(self.headers),
                                          "body": document, "items": items_of(prompt), "schema": schema})

    def _answer(self, question):
        form = question["response_format"]["json_schema"]
        if question["response_format"]["type"] != "json_schema" or question["model"] != MODEL:
            raise ValueError("another model, or no schema")
        entries = entries_for(form["name"], items_of(question["messages"][-1]["content"]),
                              self.server.stand_in.answers)
        self.send_completion(json.dumps({"entries": entries}, ensure_ascii=False))

    def send_completion(self, text):
        self._send(200, _completion(text))

    def _send(self, status, document):
        self._send_bytes(status, json.dumps(document).encode())

    def _send_bytes(self, status, data, content_type="application/json", length=None):
        self.send_response(status)
        self.send_header("Content-Type", content_type)
        self.send_header("Content-Length", str(len(data) if length is None else length))
        self.end_headers()
        self.wfile.write(data)

    def hang(self):
        self.connection.settimeout(None)
        self.rfile.read(1)  # until the other side goes
        self.close_connection = True

    def close_early(self):
        whole = json.dumps(_completion('{"entries": []}')).encode()
        self._send_bytes(200, whole[:len(whole) // 2], length=len(whole))
        self.close_connection = True
        self.connection.shutdown(socket.SHUT_RDWR)

    def send_much(self, total, chunked):
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        self.send_header("Transfer-Encoding", "chunked") if chunked else self.send_header("Content-Length", str(total))
        self.end_headers()
        piece = b" " * 65536
        sent = 0
        while total is None or sent < total:
            part = piece if total is None else piece[:total - sent]
            self.wfile.write(b"%x\r\n%s\r\n" % (len(part), part) if chunked else part)
            sent += len(part)
        if chunked:
            self.wfile.write(b"0\r\n\r\n")

    def redirect(self):
        self.send_response(307)
        self.send_header("Location", self.server.stand_in.elsewhere)
        self.send_header("Content-Length", "0")
        self.end_headers()


def _completion(text):
    return {"id": "1", "object": "chat.completion", "created": 0, "model": MODEL,
            "choices": [{"index": 0, "message": {"role": "assistant", "content": text}, "finish_reason": "stop"}],
            "usage": {"prompt_tokens": 0, "completion_tokens": 0, "total_tokens": 0}}


BAD = {
    "hang": _Handler.hang,
    "close": _Handler.close_early,
    "forever": lambda handler: handler.send_much(None, chunked=True),
    "huge": lambda handler: handler.send_much(GIGABYTE, chunked=False),
    "huge-chunked": lambda handler: handler.send_much(GIGABYTE, chunked=True),
    "schema": lambda handler: handler.send_completion('{"items": [{"id": 0, "title": "?"}]}'),
    "garbage": lambda handler: handler.send_completion("Sure! Here are the names you asked for."),
    "damaged": lambda handler: handler._send_bytes(
        200, json.dumps(_completion("@")).encode().replace(b'"@"', b'"{\\"entries\\": [\xff\xfe]}"')),
    "html": lambda handler: handler._send_bytes(200, b"<html>hello</html>", "text/html"),
    "error": lambda handler: handler._send(500, {"error": {"message": "no"}}),
    "redirect": _Handler.redirect,
}
MODES = ["ok", *BAD, "no-models", "broken-models"]


def main():
    parser = argparse.ArgumentParser(description="A stand-in for a language-model server.")
    parser.add_argument("--port", type=int, default=11434)
    parser.add_argument("--delay", type=float, default=0, metavar="MS", help="before each answer, in milliseconds")
    parser.add_argument("--answers", metavar="FILE", help="the table of answers, as JSON")
    parser.add_argument("--mode", choices=MODES, default="ok")
    parser.add_argument("--first", type=int, metavar="N", help="be bad for the first N questions only")
    parser.add_argument("--elsewhere", default="", metavar="URL", help="where to redirect to")
    parser.add_argument("--log", metavar="FILE", help="append each request as a line of JSON")
    given = parser.parse_args()
    answers = None
    if given.answers:
        with open(given.answers, encoding="utf-8") as file:
            answers = json.load(file)
    with ModelServer(given.port, given.delay / 1000, answers, given.mode, given.first, given.elsewhere,
                     given.log) as server:
        print("ready", server.port, flush=True)
        try:
            threading.Event().wait()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()
