// Gives a file to the person.

export function saveBlob(name: string, blob: Blob): void {
    const url = URL.createObjectURL(blob);
    const link = document.createElement("a");
    link.href = url;
    link.download = name;
    link.click();
    // The browser has taken the content over by then.
    setTimeout(() => URL.revokeObjectURL(url), 10_000);
}

export function saveText(name: string, text: string, type: string): void {
    saveBlob(name, new Blob([text], { type }));
}
