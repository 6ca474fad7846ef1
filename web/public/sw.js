// Keeps the page for times without a network. The page is one file, so keeping it is all there is to do: it is answered
// from what is kept, and what is kept is renewed in the background.
const kCache = "orvanta-page";

self.addEventListener("install", (event) => {
    event.waitUntil(caches.open(kCache).then((cache) => cache.add("./")).then(() => self.skipWaiting()));
});

self.addEventListener("activate", (event) => {
    event.waitUntil(self.clients.claim());
});

self.addEventListener("fetch", (event) => {
    const { request } = event;
    if (request.mode !== "navigate" || request.method !== "GET") return;
    event.respondWith(
        caches.open(kCache).then(async (cache) => {
            const fresh = fetch(request).then(async (response) => {
                if (response.ok) await cache.put("./", response.clone());
                return response;
            });
            const kept = await cache.match("./");
            if (!kept) return fresh;
            event.waitUntil(fresh.catch(() => undefined));
            return kept;
        }),
    );
});
