#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Web server of the tests: version_server.py FOLDER.

Makes an authority and certificates in FOLDER, serves the files of it on this machine under several certificates, and
prints the ports as "kind=port" in one line. What the paths do is told in VersionServer.h. Ends when its standard input
ends.
"""
import datetime
import http.server
import os
import socket
import ssl
import subprocess
import sys
import threading

FOLDER = sys.argv[1]


def path(name):
    return os.path.join(FOLDER, name)


def openssl(*arguments):
    subprocess.run(["openssl", *arguments], check=True, capture_output=True)


def make_authority(name):
    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN=Authority {name}",
            "-addext", "basicConstraints=critical,CA:TRUE", "-addext", "keyUsage=critical,keyCertSign",
            "-keyout", path(f"{name}.key"), "-out", path(f"{name}.pem"))


def make_certificate(name, authority, host, has_expired=False):
    openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={name}", "-keyout", path(f"{name}.key"),
            "-out", path(f"{name}.csr"))
    with open(path(f"{name}.ext"), "w") as extension:
        extension.write(f"basicConstraints=CA:FALSE\nsubjectAltName={host}\n")
    now = datetime.datetime.utcnow()
    first, last = (now - datetime.timedelta(days=days) for days in ((20, 10) if has_expired else (1, -1)))
    # "openssl ca" sets dates in the past, which "openssl x509" cannot.
    database = path(f"{name}.db")
    os.mkdir(database)
    open(os.path.join(database, "index"), "w").close()
    with open(os.path.join(database, "serial"), "w") as serial:
        serial.write("01\n")
    with open(path(f"{name}.cnf"), "w") as settings:
        settings.write("[ca]\ndefault_ca=own\n[own]\n"
                       f"database={database}/index\nserial={database}/serial\nnew_certs_dir={database}\n"
                       "default_md=sha256\npolicy=any\n[any]\ncommonName=supplied\n")
    openssl("ca", "-batch", "-notext", "-config", path(f"{name}.cnf"), "-cert", path(f"{authority}.pem"),
            "-keyfile", path(f"{authority}.key"), "-in", path(f"{name}.csr"), "-out", path(f"{name}.pem"),
            "-extfile", path(f"{name}.ext"), "-startdate", first.strftime("%Y%m%d%H%M%SZ"),
            "-enddate", last.strftime("%Y%m%d%H%M%SZ"))


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        action, _, rest = self.path[1:].partition("/")
        if action == "redirect":
            self.move_to(f"/{rest}")
        elif action == "toPlain":
            self.move_to(f"http://127.0.0.1:{plain_port}/{rest}")
        elif action == "loop":
            self.move_to("/loop")
        elif action in ("file", "slow", "cut", "error"):
            self.send_file(action, path(rest))
        else:
            self.send_error(404)

    def move_to(self, address):
        self.send_response(302)
        self.send_header("Location", address)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def send_file(self, action, name):
        with open(name, "rb") as file:
            content = file.read()
        self.send_response(500 if action == "error" else 200)
        self.send_header("Content-Length", str(len(content) + (1000 if action == "cut" else 0)))
        self.end_headers()
        pieces = [content[i:i + 20] for i in range(0, len(content), 20)] if action == "slow" else [content]
        for piece in pieces:
            self.wfile.write(piece)
            self.wfile.flush()
            if action == "slow":
                threading.Event().wait(0.1)

    def log_message(self, format, *arguments):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, request, client_address):
        pass  # a client that does not trust the certificate


def serve(certificate=None):
    server = Server(("127.0.0.1", 0), Handler)
    if certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(path(f"{certificate}.pem"), path(f"{certificate}.key"))
        # In the thread of the connection: a client that gives up does not hold up the others.
        server.socket = context.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]


make_authority("authority")
make_authority("stranger")
make_certificate("good", "authority", "IP:127.0.0.1")
make_certificate("wrongHost", "authority", "DNS:elsewhere.invalid")
make_certificate("expired", "authority", "IP:127.0.0.1", has_expired=True)
make_certificate("unknownAuthority", "stranger", "IP:127.0.0.1")

plain_port = serve()
ports = {kind: serve(kind) for kind in ("good", "wrongHost", "expired", "unknownAuthority")}
ports["plain"] = plain_port
# Bound and not listened to: connections are refused as long as this process lives.
closed = socket.socket()
closed.bind(("127.0.0.1", 0))
ports["closed"] = closed.getsockname()[1]
print(" ".join(f"{kind}={port}" for kind, port in ports.items()), flush=True)
sys.stdin.read()
