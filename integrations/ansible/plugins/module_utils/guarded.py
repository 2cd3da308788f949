"""The frame of every module: nothing of a secret leaves it, in whatever way it ends."""

from __future__ import annotations

from typing import Any, Dict, List, NoReturn, Optional

from ansible.module_utils.basic import AnsibleModule

from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import scrub, secrets_of, without_secrets
from ansible_collections.zupolicy.policy.plugins.module_utils.tool import Tool, ToolError, describe

#: The arguments that all modules have.
COMMON: Dict[str, Any] = {
    "path": {"type": "path"},
    "paths": {"type": "list", "elements": "path"},
    "redact": {"type": "list", "elements": "str", "default": []},
    "executable": {"type": "path", "default": "zupolicy"},
}


class GuardedModule(AnsibleModule):  # type: ignore[misc]
    """A module whose arguments hold values that must not be seen.

    The engine logs the arguments and returns them, also when it refuses them before the module begins. Both happen
    through the methods below.
    """

    def __init__(self, arguments: Dict[str, Any]) -> None:
        super().__init__(
            argument_spec={**COMMON, **arguments},
            supports_check_mode=True,
            mutually_exclusive=[("path", "paths")],
            required_one_of=[("path", "paths")],
        )

    def log(self, msg: str, log_args: Optional[Dict[str, Any]] = None) -> None:
        if log_args is not None:
            log_args = {name: str(value) for name, value in without_secrets(self.params).items()}
            msg = "Invoked with " + " ".join(f"{name}={value}" for name, value in log_args.items())
        super().log(msg, log_args)

    def exit_json(self, **result: Any) -> NoReturn:
        super().exit_json(invocation={"module_args": without_secrets(self.params)}, **result)
        raise SystemExit(0)  # the engine has ended the process

    def fail_json(self, msg: str, **result: Any) -> NoReturn:
        if "failed_by_itself" not in result:
            msg = scrub(msg, secrets_of(self.params))
        result.pop("failed_by_itself", None)
        super().fail_json(msg, invocation={"module_args": without_secrets(self.params)}, **result)
        raise SystemExit(1)

    def fail(self, msg: str, **result: Any) -> NoReturn:
        """Ends with a message whose parts have no secrets."""
        self.fail_json(msg, failed_by_itself=True, **result)

    def files(self) -> List[str]:
        """The policy files, each one once."""
        paths = [self.params["path"]] if self.params["path"] is not None else self.params["paths"]
        # The tool takes a dash for standard input.
        return list(dict.fromkeys("./-" if path == "-" else path for path in paths))

    def tool(self) -> Tool:
        try:
            return Tool(self.params["executable"])
        except ToolError as failure:
            self.fail(str(failure))

    def clean(self, error: Dict[str, Any]) -> Dict[str, Any]:
        """A failure as the tool reports it, without secrets in its texts."""
        secrets = secrets_of(self.params)
        texts = {key: scrub(error[key], secrets) for key in ("message", "hint") if isinstance(error.get(key), str)}
        return {**error, **texts}

    def fail_with(self, failure: ToolError, **result: Any) -> NoReturn:
        """Ends with a failure of the tool as a whole."""
        if failure.error is None:
            self.fail_json(str(failure), **result)
        error = self.clean(failure.error)
        self.fail(describe(error), error=error, **result)
