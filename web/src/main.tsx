// Starts the page: with the recording that the command wrote into it, or as the static page that takes any.
import { render } from "preact";
import "./style/page.css";
import { hasReport, readEmbedded } from "./model/embedded";
import { Session } from "./session";
import { App } from "./ui/App";

async function start(root: HTMLElement): Promise<void> {
    if (hasReport()) {
        const { model, video } = await readEmbedded();
        const session = new Session(model);
        session.video.value = video;
        render(<App session={session} />, root);
    } else if (import.meta.env.MODE !== "report") {
        const { startSite } = await import("./site/start");
        startSite(root);
    }
}

const root = document.getElementById("app");
if (root) {
    start(root).catch((error: unknown) => {
        const message = error instanceof Error ? error.message : String(error);
        render(<main><p class="notice" role="alert">{message}</p></main>, root);
    });
}
