// Keeps the files of the page, and nothing else: no figure ever reaches it.
const fichiers = __FICHIERS__;
const cache = "kvcalcul-" + __VERSION__;

self.addEventListener("install", (evenement) =>
    evenement.waitUntil(
        caches
            .open(cache)
            .then((c) => c.addAll(fichiers))
            .then(() => self.skipWaiting()),
    ),
);
self.addEventListener("activate", (evenement) =>
    evenement.waitUntil(
        caches
            .keys()
            .then((noms) => Promise.all(noms.filter((nom) => nom !== cache).map((nom) => caches.delete(nom))))
            .then(() => self.clients.claim()),
    ),
);
self.addEventListener("fetch", (evenement) => {
    if (evenement.request.method !== "GET" || new URL(evenement.request.url).origin !== location.origin) return;
    evenement.respondWith(
        caches.match(evenement.request, { ignoreSearch: true }).then((connu) => connu ?? fetch(evenement.request)),
    );
});
