// Starts the static page, and lets it work without a network from the first load on.
import { render } from "preact";
import { Site } from "./Site";
import { Workspace } from "./workspace";

export function startSite(root: HTMLElement): void {
    render(<Site workspace={new Workspace()} />, root);
    if (location.protocol.startsWith("http") && "serviceWorker" in navigator) {
        // Without it the page works as long as it is open; browsers refuse it where the address is not secure.
        navigator.serviceWorker.register("sw.js").catch(() => undefined);
    }
}
