"""Policy files for tests and measurements of the page."""
import pathlib
import random
from xml.sax.saxutils import escape, quoteattr


def policy_file(policies, tasks="", version="20240311081500"):
    """`policies`: {software ID: {section: {name: value}}}."""
    products = "".join(
        f"<Product SoftwareID={quoteattr(product)}>" + "".join(
            f"<Section name={quoteattr(section)}>" + "".join(
                f"<Setting name={quoteattr(name)}>{escape(value)}</Setting>" for name, value in settings.items())
            + "</Section>" for section, settings in sections.items()) + "</Product>"
        for product, sections in policies.items())
    return (f'<?xml version="1.0" encoding="UTF-8"?>\n<PolicyFile><PolicyRoot version="{version}" '
            f'AssignmentList="all"><PolicyGroup Path="0"><Policy PathID="0" PolicyVersion="{version}">{products}'
            f'</Policy></PolicyGroup></PolicyRoot><TaskRoot version="{version}">{tasks}</TaskRoot></PolicyFile>\n')


def task(software, task_id, name="Nightly scan", settings=None):
    inner = "".join(f"<Setting name={quoteattr(key)}>{escape(value)}</Setting>"
                    for key, value in (settings or {}).items())
    return (f'<TaskGroup Path="0" SoftwareID={quoteattr(software)} TaskID={quoteattr(task_id)} '
            f'DisplayName={quoteattr(name)} TaskType="Scan" CreatorID="SITEADMIN" Platforms="WIN|LNX" '
            f'TaskPriority="5" TaskVersion="20240402060000"><Task PathID="0" TaskVersion="20240402060000">'
            f'<Section name="Schedule">{inner}</Section></Task></TaskGroup>')


SITES = ["berlin", "oslo", "lima", "osaka", "quebec", "porto", "graz", "york"]


def fleet(folder, count, seed=1):
    """Writes files that are alike but for some outliers, 20 settings each; gives their names."""
    rng = random.Random(seed)
    names = []
    for number in range(count):
        policies = {
            "PRODUCTA1000": {
                "General": {"Enabled": "1", "ScanInterval": "60", "LogLevel": "3", "Greeting": "Welcome",
                            "Proxy": f"proxy.{SITES[number % len(SITES)]}.example.org:8080"},
                "Exclusions": {"Count": "2", "Path0": r"C:\Data\Build", "Path1": "/srv/archive"},
                "Notify": {"Recipients": "ops@example.org", "Message": "Scan finished"}},
            "PRODUCTB2000": {
                "General": {"Enabled": "1", "LogLevel": "2", "Server": "updates.example.org", "Port": "443"},
                "Limits": {"MaxThreads": "8", "MaxMemory": "2048"}},
        }
        if rng.random() < 0.02:
            policies["PRODUCTA1000"]["General"]["ScanInterval"] = rng.choice(["15", "5", "1440"])
        if rng.random() < 0.01:
            del policies["PRODUCTA1000"]["Notify"]["Recipients"]
        if rng.random() < 0.005:
            policies["PRODUCTB2000"]["General"]["Enabled"] = "0"
        if rng.random() < 0.01:
            policies["PRODUCTC3000"] = {"Limits": {"MaxThreads": "2"}}
        if rng.random() < 0.006:
            del policies["PRODUCTB2000"]
        schedule = {"Hour": "2" if rng.random() > 0.03 else "14", "Minute": "30"}
        text = policy_file(policies, task("PRODUCTA1000", "{task-1}", settings=schedule),
                           f"2024{1 + number % 12:02}{1 + number % 28:02}081500")
        if number % 997 == 41:
            text = text.replace("</Policy>", "</Polcy>")
        if number % 499 == 17:
            text = text.replace("<Section name=\"Limits\">", '<Section name="Limits"><Setting name="MaxThreads">1</Setting>')
        name = f"site-{SITES[number % len(SITES)]}-{number:05}.xml"
        pathlib.Path(folder, name).write_text(text, encoding="utf-8")
        names.append(name)
    return names
